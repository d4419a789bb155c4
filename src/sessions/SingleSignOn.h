#pragma once

namespace vagent {

// The single-sign-on switches in section "Base" of the "Config.ini" beside
// the executable: "1" for a non-zero flag, "0" for zero. 1 when the switch
// was written.
int EnableSSO(int flag);
int EnableZ9SSO(int flag);

}  // namespace vagent
