#include "vagent/VAgent.h"

// Sessions, settings, single sign-on and printers: with a host they go to
// the agent service as tasks 24 to 27, 32, 33, 36, 40, 41 and 43, without
// one the same operations run here.

#include <cstdlib>

#include "facade/RemoteCall.h"
#include "facade/Shield.h"
#include "sessions/PrinterEnumeration.h"
#include "sessions/SessionOperations.h"
#include "sessions/SingleSignOn.h"
#include "sessions/SystemSettings.h"
#include "task/TaskIds.h"

using namespace vagent::task;

using vagent::facade::AcknowledgedCall;
using vagent::facade::CodeZeroCall;
using vagent::facade::DecimalText;
using vagent::facade::Exchange;
using vagent::facade::FlagText;
using vagent::facade::Reply;
using vagent::facade::RequestBlock;
using vagent::facade::Shielded;

namespace {

// A count from the service: 0 when the request could not be sent, -1 when
// the service reported a failure, else the count it sent.
int RemoteCount(const vagent::facade::AgentTarget& target, std::uint32_t& errorCode,
                std::uint32_t taskId) {
    int count = 0;
    const Reply reply = Exchange(target, errorCode, taskId, RequestBlock::None(), &count);
    if (reply == Reply::kNotSent) {
        return 0;
    }
    return errorCode != 0 ? -1 : count;
}

}  // namespace

int VAgent::GetSessionCounts() {
    return Shielded(IsRemote() ? 0 : -1, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return vagent::GetSessionCounts();
        }
        return RemoteCount(Target(), errorCode_, kGetSessionCounts);
    });
}

int VAgent::GetSessionCountsAll() {
    return Shielded(IsRemote() ? 0 : -1, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return vagent::GetSessionCountsAll();
        }
        return RemoteCount(Target(), errorCode_, kGetSessionCountsAll);
    });
}

int VAgent::GetSessionInfo(std::vector<_VXSessionA>& sessions) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return vagent::GetSessionInfo(sessions);
        }
        return CodeZeroCall(Target(), errorCode_, kGetSessionInfo, RequestBlock::None(), &sessions);
    });
}

// The service answers the operation's result and the value as two decimal
// texts; any other answer says only whether the exchange succeeded.
int VAgent::GetSysSetting(long key, long* value) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            std::int32_t setting = value != nullptr ? static_cast<std::int32_t>(*value) : 0;
            const int read = vagent::GetSysSetting(key, &setting);
            if (value != nullptr) {
                *value = setting;
            }
            return read;
        }
        std::vector<std::string> answer;
        const Reply reply = Exchange(Target(), errorCode_, kGetSysSetting,
                                     RequestBlock::List({DecimalText(key)}), &answer);
        if (reply == Reply::kSucceeded && answer.size() == 2) {
            if (value != nullptr) {
                *value = std::atol(answer[1].c_str());
            }
            return static_cast<int>(std::atol(answer[0].c_str()));
        }
        return reply == Reply::kSucceeded ? 1 : 0;
    });
}

int VAgent::SetSysSetting(long key, long value) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return vagent::SetSysSetting(key, value);
        }
        std::vector<std::string> answer;
        const Reply reply =
            Exchange(Target(), errorCode_, kSetSysSetting,
                     RequestBlock::List({DecimalText(key), DecimalText(value)}), &answer);
        if (reply == Reply::kSucceeded && answer.size() == 1) {
            return static_cast<int>(std::atol(answer[0].c_str()));
        }
        return reply == Reply::kSucceeded ? 1 : 0;
    });
}

int VAgent::SessionLogoff(int sessionId, int flag) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return vagent::SessionLogoff(sessionId, flag);
        }
        return AcknowledgedCall(Target(), errorCode_, kSessionLogoff,
                                RequestBlock::List({DecimalText(sessionId), DecimalText(flag)}));
    });
}

// The service's answer counts only when it carries a non-zero
// acknowledgement.
int VAgent::EnableSSO(int enable) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return vagent::EnableSSO(enable);
        }
        return AcknowledgedCall(Target(), errorCode_, kEnableSSO,
                                RequestBlock::List({FlagText(enable)}));
    });
}

int VAgent::EnableZ9SSO(int enable) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return vagent::EnableZ9SSO(enable);
        }
        return AcknowledgedCall(Target(), errorCode_, kEnableZ9SSO,
                                RequestBlock::List({FlagText(enable)}));
    });
}

// Locally the number of sessions messaged (or -1); remotely 1 when the code
// is 0, whatever the service's broadcast reached.
int VAgent::BroadcastMessage(std::string& title, std::string& message) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return vagent::BroadcastMessage(title, message);
        }
        std::uint32_t acknowledgement = 0;
        return CodeZeroCall(Target(), errorCode_, kBroadcastMessage,
                            RequestBlock::List({title, message}), &acknowledgement);
    });
}

int VAgent::GetPrinterInfo(std::vector<_VXPrinterA>& printers) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return vagent::EnumeratePrinter(printers);
        }
        return CodeZeroCall(Target(), errorCode_, kGetPrinterInfo, RequestBlock::None(), &printers);
    });
}
