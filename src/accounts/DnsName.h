#pragma once

#include <cstdint>
#include <string>

// The computer's name of the given format (0 NetBIOS, 2 DNS domain) in an
// array that the caller frees with delete[]. Returns 1, or 0 with the name
// null.
int GetDnsName(char** name, int nameType);

// A DNS domain name as "DC=" parts separated by ", ": x.y.z gives
// DC=x, DC=y, DC=z (reverse non-zero takes the labels from the end).
// Always returns 1.
int NameDns2Ldap(const std::string& dns, std::string& out, int reverse);

// The DNS domain as the workers read it, with the size query first. When
// the buffer cannot be had it logs "<function> : new [<size>] bytes failed",
// stores 8 in errorCode and returns false.
bool ReadDnsDomain(const char* function, std::uint32_t& errorCode, std::string& domain);

// The same, then turned into the domain's distinguished name.
bool ReadDomainDn(const char* function, std::uint32_t& errorCode, std::string& dn);
