#include <iostream>
#include <string>

#include <vagent/VAgent.h>

// Asks this machine for its name through the library, with no host set.
int main() {
    VAgent agent;
    std::string name;
    if (agent.GetHostName(name) != 1) {
        std::string text;
        agent.GetErrorMessage(text);
        std::cerr << "GetHostName failed: " << agent.GetErrorCode() << " " << text << std::endl;
        return 1;
    }
    std::cout << "host name: " << name << std::endl;
    return 0;
}
