#pragma once

#include <string>

#include "vagent/Export.h"

// The process-wide LDAP root site: the relative distinguished names put
// between an object's own "CN=" part and the domain's "DC=" parts. It is
// "CN=Users" until set; an empty root site puts objects directly under the
// domain. Both calls hold the root site's own lock just for the copy.
VAGENT_API void SetLDAPRootSite(std::string& site);
VAGENT_API std::string GetLDAPRootSite();
