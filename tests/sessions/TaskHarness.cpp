#include "sessions/TaskHarness.h"

#include <gtest/gtest.h>

namespace vagent::test {

FakeSessionHost::FakeSessionHost() {
    std::filesystem::create_directories(directory.Path() / "lib");
    std::filesystem::create_directories(directory.Path() / "bin");
    host.libraryPath = ToLibraryPath(directory.Path() / "lib" / "vagent.dll");
    host.executablePath = ToLibraryPath(directory.Path() / "bin" / "vagentd.exe");
}

std::string FakeSessionHost::LibraryConfig() const {
    return ReadWholeFile(LibraryConfigFile());
}

std::string FakeSessionHost::ExecutableConfig() const {
    return ReadWholeFile(ExecutableConfigFile());
}

}  // namespace vagent::test
