#include "vagent/TaskFactory.h"

#include <cstdint>
#include <new>

#include "vagent/VFileTask.h"
#include "vagent/VGroupTask.h"
#include "vagent/VPrinterTask.h"
#include "vagent/VSessionTask.h"
#include "vagent/VUserTask.h"

namespace {

constexpr unsigned long kHighestTaskId = 47;

enum class Family { User, Group, Session, Printer, File };

// The family that serves each id, indexed by id - 1.
constexpr Family kFamilyById[kHighestTaskId] = {
    Family::User,    Family::User,    Family::User,    Family::User,    Family::User,
    Family::User,    Family::User,    Family::User,    Family::User,    Family::User,
    Family::User,    Family::User,    Family::User,    Family::Group,   Family::Group,
    Family::Group,   Family::Group,   Family::Group,   Family::Group,   Family::Group,
    Family::Group,   Family::Group,   Family::Group,   Family::Session, Family::Session,
    Family::Session, Family::Printer, Family::File,    Family::File,    Family::File,
    Family::File,    Family::Session, Family::Session, Family::File,    Family::File,
    Family::Session, Family::User,    Family::File,    Family::File,    Family::Session,
    Family::Session, Family::Group,   Family::Session, Family::File,    Family::File,
    Family::File,    Family::File,
};

VTask* NewTaskOf(Family family, std::uint32_t id) {
    switch (family) {
        case Family::User:
            return new (std::nothrow) VUserTask(id);
        case Family::Group:
            return new (std::nothrow) VGroupTask(id);
        case Family::Session:
            return new (std::nothrow) VSessionTask(id);
        case Family::Printer:
            return new (std::nothrow) VPrinterTask(id);
        case Family::File:
            return new (std::nothrow) VFileTask(id);
    }
    return nullptr;
}

}  // namespace

VTask* CreateVTask(unsigned long id) {
    // Wraps 0 round to the largest value, so one comparison refuses 0 and
    // everything above 47.
    if (id - 1 > kHighestTaskId - 1) {
        return nullptr;
    }
    return NewTaskOf(kFamilyById[id - 1], static_cast<std::uint32_t>(id));
}
