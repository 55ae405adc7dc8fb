#pragma once

#include <memory>

#include "driver/DriverInstead.h"

namespace tvn2x {

/// The receiver that the user has chosen for this host program, in force for the thread as long as one of these lives
/// on it. Without a choice it is the registered one.
class ChosenDriver
{
public:
    /// As Require, but for a choice that cannot be had: what needs no receiver goes on.
    ChosenDriver() noexcept;

    /// Before the first object of the driver library is created. Raises 429 where the choice names nothing that can be
    /// had, or where receiver, run control and error reporting are registered from different files.
    void Require();

private:
    std::shared_ptr<DriverInstead> instead_;
};

}  // namespace tvn2x
