#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CLI/App.hpp"
#include "host/commands/Commands.h"

namespace tvn2x {

/// The part of the command line that is about what becomes of a run: limits, reports and journal of scan, and the
/// commands judge, report, compare and limits. Lives as long as the parser.
class RunArguments
{
public:
    void AddCommands(CLI::App& app);
    void AddToScan(CLI::App& scan);
    void AddToServe(CLI::App& serve);

    /// What scan or serve was given; `command` is the parsed one.
    void FillScan(const CLI::App& command, ScanOptions& options) const;
    /// Does the command that was given and returns its exit code; nothing where it is none of these.
    std::optional<int> Run(const CLI::App& app, Console& console) const;

private:
    static void AddLimits(CLI::App& command, ReportOptions& files);
    static void AddReports(CLI::App& command, ReportOptions& files);
    void AddPasses(CLI::App& command, const std::string& repeatHelp);
    void AddProtocol(CLI::App& command);
    void AddMetrics(CLI::App& command);
    void AddStored(CLI::App& command, ReportOptions& files);

    RunProtocol protocol_;
    ReportOptions scanFiles_, judgeFiles_, reportFiles_;
    std::vector<std::wstring> setups_;
    std::wstring result_, journal_, resume_, every_, before_, after_, compareLimits_;
    double driftLevel_ = 0, driftMer_ = 0;
    int32_t repeat_ = 1;
};

}  // namespace tvn2x
