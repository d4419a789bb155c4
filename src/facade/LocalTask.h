#pragma once

namespace vagent::facade {

// A family's task as the local path uses it: id 0, the agent's work
// environment, no root site of its own.
template <class Family>
struct LocalTask : Family {
    explicit LocalTask(int workEnv) : Family(0) { this->SetWorkEnv(workEnv, nullptr); }
};

}  // namespace vagent::facade
