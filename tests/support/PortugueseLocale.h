#pragma once
#include "support/TempTree.h"
#include <clocale>
#include <cstdlib>
#include <string>

namespace vesko::testing {

/// The process's locale is Brazilian Portuguese while this lives: decimal comma, dots between thousands. Made
/// from the system's sources where it is not installed.
class PortugueseLocale {
public:
    PortugueseLocale() : before_(std::setlocale(LC_ALL, nullptr)) {
        if (set()) return;
        const std::string make =
            "localedef -i pt_BR -f UTF-8 " + made_.path("pt_BR.UTF-8") + " >/dev/null 2>&1";
        if (std::system(make.c_str()) != 0) return;
        ::setenv("LOCPATH", made_.root().path().c_str(), 1);
        set();
        ::unsetenv("LOCPATH");
    }
    PortugueseLocale(const PortugueseLocale&) = delete;
    PortugueseLocale& operator=(const PortugueseLocale&) = delete;
    ~PortugueseLocale() { std::setlocale(LC_ALL, before_.c_str()); }

    bool isThere() const { return there_; }

private:
    bool set() { return there_ = std::setlocale(LC_ALL, "pt_BR.UTF-8") != nullptr; }

    TempTree made_;
    std::string before_;
    bool there_ = false;
};

} // namespace vesko::testing
