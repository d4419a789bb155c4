#include "vagent/VAgentW.h"

#include "accounts/TextConversion.h"
#include "facade/VAgentWCall.h"
#include "facade/WideText.h"

// Counts fail with -1, not 0, so that a failed count never reads as a
// server without sessions.
int VAgentW::GetSessionCounts() {
    return ThroughNarrowAgent([](VAgent& agent) { return agent.GetSessionCounts(); }, -1);
}

int VAgentW::GetSessionCountsAll() {
    return ThroughNarrowAgent([](VAgent& agent) { return agent.GetSessionCountsAll(); }, -1);
}

int VAgentW::GetSessionInfo(std::vector<_VXSessionW>& sessions) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<_VXSessionA> found;
        const int result = agent.GetSessionInfo(found);
        ReplaceWithWidened(found, sessions);
        return result;
    });
}

int VAgentW::GetSysSetting(long key, long* value) {
    return ThroughNarrowAgent([&](VAgent& agent) { return agent.GetSysSetting(key, value); });
}

int VAgentW::SetSysSetting(long key, long value) {
    return ThroughNarrowAgent([&](VAgent& agent) { return agent.SetSysSetting(key, value); });
}

int VAgentW::SessionLogoff(int sessionId, int flag) {
    return ThroughNarrowAgent([&](VAgent& agent) { return agent.SessionLogoff(sessionId, flag); });
}

int VAgentW::EnableSSO(int enable) {
    return ThroughNarrowAgent([&](VAgent& agent) { return agent.EnableSSO(enable); });
}

int VAgentW::EnableZ9SSO(int enable) {
    return ThroughNarrowAgent([&](VAgent& agent) { return agent.EnableZ9SSO(enable); });
}

int VAgentW::BroadcastMessage(std::wstring& title, std::wstring& message) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::string narrowTitle = Narrow(title);
        std::string narrowMessage = Narrow(message);
        return agent.BroadcastMessage(narrowTitle, narrowMessage);
    });
}

int VAgentW::GetPrinterInfo(std::vector<_VXPrinterW>& printers) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<_VXPrinterA> found;
        const int result = agent.GetPrinterInfo(found);
        ReplaceWithWidened(found, printers);
        return result;
    });
}
