#pragma once

namespace vesko::testing {

/// The stand-ins for the system's classes, fresh for one test. What a test makes of them ends before this.
class FakeSystem {
public:
    FakeSystem();
    FakeSystem(const FakeSystem&) = delete;
    FakeSystem& operator=(const FakeSystem&) = delete;
    ~FakeSystem();
};

} // namespace vesko::testing
