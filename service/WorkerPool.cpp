#include "WorkerPool.h"

#include <utility>

namespace vagent::service {

WorkerPool::WorkerPool(unsigned threads) {
    threads_.reserve(threads);
    for (unsigned i = 0; i < threads; ++i) {
        threads_.emplace_back([this] { Work(); });
    }
}

WorkerPool::~WorkerPool() {
    Shutdown();
}

void WorkerPool::Submit(Job job) {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (closing_) {
            return;
        }
        jobs_.push_back(std::move(job));
    }
    wake_.notify_one();
}

void WorkerPool::Shutdown() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        closing_ = true;
    }
    wake_.notify_all();
    for (std::thread& thread : threads_) {
        if (thread.joinable()) {
            thread.join();
        }
    }
}

bool WorkerPool::NextJob(Job& job) {
    std::unique_lock<std::mutex> lock(mutex_);
    wake_.wait(lock, [this] { return closing_ || !jobs_.empty(); });
    if (jobs_.empty()) {
        return false;
    }
    job = std::move(jobs_.front());
    jobs_.pop_front();
    return true;
}

void WorkerPool::Work() {
    Job job;
    while (NextJob(job)) {
        job();
        job = nullptr;
    }
}

}  // namespace vagent::service
