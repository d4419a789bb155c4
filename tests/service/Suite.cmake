# The service suite tests the serving core directly.
target_link_libraries(${suite} PRIVATE vagentd_core)
