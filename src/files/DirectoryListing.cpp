#include "files/DirectoryListing.h"

#include <algorithm>
#include <cstdio>

#include "support/TextCompare.h"
#include "os/FileSystem.h"
#include "os/ScopedFindHandle.h"

namespace vagent::files {
namespace {

constexpr int kFirstListedDrive = 2;  // C: ; A: and B: are never listed
constexpr int kDriveBits = 32;

std::int32_t DirectoryBit(std::uint32_t attributes) {
    return (attributes & os::kFileAttributeDirectory) != 0 ? 1 : 0;
}

bool IsDotEntry(const std::string& name) {
    return name == "." || name == "..";
}

// The name after the last backslash or, with none, after the last colon.
std::string BaseName(const std::string& name) {
    std::size_t cut = name.rfind('\\');
    if (cut == std::string::npos) {
        cut = name.rfind(':');
    }
    return cut == std::string::npos ? name : name.substr(cut + 1);
}

void AppendEntry(const os::FindEntry& found, std::vector<FileAttrA>& entries) {
    if (IsDotEntry(found.name)) {
        return;
    }
    FileAttrA entry;
    entry.name = BaseName(found.name);
    entry.attribute = DirectoryBit(found.attributes);
    entries.push_back(entry);
}

int ListPattern(const std::string& pattern, std::vector<FileAttrA>& entries) {
    os::ScopedFindHandle search(os::Files());
    os::FindEntry found;
    if (search.First(pattern, found) != 0) {
        return 0;
    }
    do {
        AppendEntry(found, entries);
    } while (search.Next(found) == 0);
    std::stable_sort(entries.begin(), entries.end(), [](const FileAttrA& a, const FileAttrA& b) {
        return CompareIgnoringCase(a.name, b.name) < 0;
    });
    return 1;
}

void AppendDrive(const std::string& name, std::vector<FileAttrA>& entries) {
    FileAttrA drive;
    drive.name = name;
    drive.attribute = 1;
    entries.push_back(drive);
}

int ListDrives(std::vector<FileAttrA>& entries) {
    os::FileSystem& files = os::Files();
    const std::uint32_t drives = files.LogicalDrives();
    for (int bit = kFirstListedDrive; bit < kDriveBits; ++bit) {
        if ((drives & (1u << bit)) != 0) {
            char root[8];
            std::snprintf(root, sizeof root, "%c:\\", 'A' + bit);
            AppendDrive(root, entries);
        }
    }
    std::vector<std::string> networkDisks;
    files.ConnectedDiskNames(networkDisks);
    for (const std::string& localName : networkDisks) {
        AppendDrive(localName, entries);
    }
    return 1;
}

}  // namespace

int DirList(const std::string& pattern, std::vector<FileAttrA>& entries) {
    entries.clear();
    return pattern.empty() ? ListDrives(entries) : ListPattern(pattern, entries);
}

int IsFileExist(const std::vector<std::string>& paths, std::vector<ExistAttr>& answers) {
    std::vector<ExistAttr>().swap(answers);
    os::FileSystem& files = os::Files();
    ExistAttr previous;
    for (const std::string& path : paths) {
        ExistAttr answer;
        if (!files.Exists(path)) {
            answer.exists = 0;
            answer.directory = previous.directory;
        } else {
            std::uint32_t attributes = 0;
            answer.exists = 1;
            answer.directory =
                files.Attributes(path, attributes) == 0 ? DirectoryBit(attributes) : 0;
        }
        answers.push_back(answer);
        previous = answer;
    }
    return 1;
}

}  // namespace vagent::files
