#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/live/LiveState.h"
#include "host/serve/Gate.h"

namespace tvn2x {

/// What a reader gets.
struct Answer
{
    unsigned status = 200;
    std::vector<std::pair<std::string, std::string>> fields{};
    std::shared_ptr<const std::string> body = std::make_shared<const std::string>();
    /// The reader wants events from behind this version on, without an end.
    std::optional<uint64_t> eventsSince{};
};

/// What is served of a run: the page and its parts, data, reports and metrics. No path leads to a file, and nothing
/// that a reader can ask for changes anything.
class LiveSite
{
public:
    explicit LiveSite(Gate gate) : gate_(std::move(gate)) {}

    /// `age` is the state's, in seconds. What is costly to make is made once for each state.
    Answer Ask(const Question& question, const LiveStatePtr& state, double age);

private:
    struct Made
    {
        LiveStatePtr state;
        double age = 0;
        std::shared_ptr<const std::string> body;
    };

    Answer Enter(const Question& question, const LiveStatePtr& state, double age);
    Answer Serve(const Question& question, const LiveStatePtr& state, double age);

    Gate gate_;
    std::map<std::string, Made, std::less<>> made_;  ///< by path
};

}  // namespace tvn2x
