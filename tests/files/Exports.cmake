# The file family's members that host programs call across the DLL: the
# client side of a streamed transfer receives trees under a destination.
list(APPEND VAGENT_REQUIRED_EXPORTS 9VFileTask16ReceiveTreeUnder 9VFileTask11ReceiveTree
     9VFileTask8SendTree 9VFileTask12SendEndFrame)
