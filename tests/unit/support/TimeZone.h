#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

namespace tvn2x {

/// The machine's local time by these rules ("CET-1CEST,M3.5.0,M10.5.0/3") while it lives, and by its own afterwards.
class TimeZone
{
public:
    explicit TimeZone(const char* rules) { Set(rules); }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
    ~TimeZone() { Set(wasSet_ ? before_.c_str() : nullptr); }

private:
    static void Set(const char* rules)
    {
        if (rules) {
            setenv("TZ", rules, 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }

    const bool wasSet_ = std::getenv("TZ") != nullptr;
    const std::string before_ = wasSet_ ? std::getenv("TZ") : "";
};

}  // namespace tvn2x
