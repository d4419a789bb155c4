#pragma once

namespace vagent::test {

// Makes the library's non-throwing allocations (new (std::nothrow)) fail on
// this thread: the first `allowed` succeed, the next `failures` fail, the
// rest succeed again. Ends with the scope.
class ScopedAllocationFailure {
public:
    explicit ScopedAllocationFailure(int allowed = 0, int failures = 1);
    ~ScopedAllocationFailure();
    ScopedAllocationFailure(const ScopedAllocationFailure&) = delete;
    ScopedAllocationFailure& operator=(const ScopedAllocationFailure&) = delete;

    // Non-throwing allocations refused so far in this scope.
    int Refused() const;
};

}  // namespace vagent::test
