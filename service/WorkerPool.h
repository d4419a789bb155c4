#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace vagent::service {

// A fixed number of threads that run submitted jobs in the order they came.
// The queue needs no bound of its own: every job holds an accepted
// connection, and those are capped before they are accepted.
class WorkerPool {
public:
    using Job = std::function<void()>;

    explicit WorkerPool(unsigned threads);
    // Shuts down.
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    void Submit(Job job);
    // Runs every job already submitted, then joins the threads. Later
    // submissions are dropped. Safe to call twice.
    void Shutdown();

private:
    void Work();
    bool NextJob(Job& job);

    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Job> jobs_;
    bool closing_ = false;
    std::vector<std::thread> threads_;
};

}  // namespace vagent::service
