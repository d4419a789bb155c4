# The task factory (the free function, not the facades' static members of
# the same name) and every public member of the task client.
list(APPEND VAGENT_REQUIRED_EXPORTS
  Z11CreateVTaskm 11VTaskClientC1Ev 11VTaskClientD1Ev 11VTaskClient9SetServer
  11VTaskClient7SetTask 11VTaskClient10AddRequest 11VTaskClient11SendRequest
  11VTaskClient13GetTaskResult 11VTaskClient13ConnectServer 11VTaskClient7RecvAll)
