#pragma once

#include <unistd.h>

#include <cstdlib>

namespace tavinor::test {

/// Takes the rights of an ordinary user while it lives: file permissions mean nothing to the superuser.
class OrdinaryUser {
  public:
    OrdinaryUser() : superuser_(geteuid() == 0) {
        if (superuser_) changed_ = seteuid(nobody) == 0;
    }
    ~OrdinaryUser() {
        if (superuser_ && changed_ && seteuid(0) != 0) std::abort();
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

    [[nodiscard]] bool is() const { return !superuser_ || changed_; }

  private:
    static constexpr uid_t nobody = 65534;
    bool superuser_;
    bool changed_ = false;
};

}  // namespace tavinor::test
