#include "Version.h"

namespace vagent::service {

const char* VagentdVersion() {
    return VAGENTD_VERSION;
}

}  // namespace vagent::service
