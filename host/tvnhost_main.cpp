#include <windows.h>

#include <objbase.h>

#include <algorithm>
#include <exception>
#include <string>
#include <vector>

#include "CLI/App.hpp"
#include "CLI/Config.hpp"
#include "CLI/Formatter.hpp"
#include "Version.h"
#include "com/Module.h"
#include "com/TypeLibrary.h"
#include "dvbc/Qam.h"
#include "host/commands/Commands.h"
#include "host/commands/RunArguments.h"
#include "host/commands/TextOption.h"
#include "host/commands/Usage.h"
#include "host/link/Plugin.h"
#include "setup/catalogue/LevelUnits.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

/// The command line as it was parsed.
struct Arguments
{
    std::wstring setup, output, network, receiver, signals, levelUnit = L"dBuV";
    ImportOptions import;
    NetworkOptions model;
    ScanOptions scan;
    ServeOptions serve;
    RunArguments run;
    bool asJson = false, forUser = false, checksReceiver = false, replacesChannels = false, forces = false;
};

/// The single-threaded apartment of the main thread, while it lives.
class Apartment
{
public:
    Apartment() : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment()
    {
        com::ForgetTypeInfo();
        if (SUCCEEDED(result_)) {
            CoUninitialize();
        }
    }

private:
    HRESULT result_;
};

/// Which receiver a command works with.
void AddReceiver(CLI::App& command, Arguments& arguments)
{
    AddText(command, "--receiver", arguments.receiver,
            "Receiver to use: simulated, recordings, registered (the driver), or a driver's class identity in braces")
        ->type_name("WHICH");
}

/// What the receiver receives where it is no cable.
void AddReceived(CLI::App& command, Arguments& arguments, std::wstring& network)
{
    AddText(command, "--network", network, "Network model for the simulated receiver")->type_name("FILE");
    AddText(command, "--signals", arguments.signals, "Folder of recorded signals for the receiver of recordings")
        ->type_name("FOLDER");
}

/// Where the plan comes from: a file, or a raster of frequencies.
void AddPlan(CLI::App& command, PlanSource& plan)
{
    CLI::Option* file =
        AddText(command, "plan", plan.file, "Channel plan: DVBv5 channel file, or label,frequency,symbol rate,QAM")
            ->type_name("FILE");
    CLI::Option* from = command.add_option("--from", plan.from, "Instead of a plan: first centre frequency in MHz");
    CLI::Option* to = command.add_option("--to", plan.to, "Last centre frequency");
    CLI::Option* step = command.add_option("--step", plan.step, "From one to the next")->capture_default_str();
    for (CLI::Option* option : {from, to, step}) {
        option->type_name("MHZ")->excludes(file);
    }
    from->needs(to);
    to->needs(from);
    step->needs(from);
    command.add_option("--order", plan.defaults.orderOfQam, "Order of QAM where the plan names none")
        ->type_name("ORDER")
        ->check(CLI::IsMember(std::vector<int32_t>(dvbc::ordersOfQam.begin(), dvbc::ordersOfQam.end())));
    command
        .add_option("--symbol-rate", plan.defaults.symbolRate, "MSymb/s where the plan names none (6.9 without a plan)")
        ->type_name("RATE");
}

CLI::App* AddImport(CLI::App& app, Arguments& arguments)
{
    CLI::App* command = app.add_subcommand("import", "Make a setup from a network's channel plan");
    AddPlan(*command, arguments.import.plan);
    AddText(*command, "-o,--output", arguments.import.setup, "Setup file to write")->type_name("FILE")->required();
    command->add_option("--ber-samples", arguments.import.berSamples, "Bit error count, in blocks of 10^7 bits")
        ->type_name("N")
        ->check(CLI::Range(1, 100000).description("1..100000"))
        ->capture_default_str();
    command->add_option("--max-settling-time", arguments.import.maxSettlingTime, "Longest wait for a lock, in seconds")
        ->type_name("S")
        ->check(CLI::Range(1, 300).description("1..300"))
        ->capture_default_str();
    AddText(*command, "--level-unit", arguments.levelUnit, "dBmV, dBpW, dBuW, dBm, dBuV or mV")
        ->type_name("UNIT")
        ->default_str("dBuV");
    command->add_flag("--force", arguments.import.forces, "Replace setups that exist");
    AddText(*command, "--title", arguments.import.title, "First line of the setup's notes")->type_name("TEXT");
    command->footer(
        "A setup has one order of QAM. A plan that mixes orders gives one setup each: SETUP-64qam, ...\n"
        "scan takes them together.");
    return command;
}

CLI::App* AddNetwork(CLI::App& app, Arguments& arguments)
{
    CLI::App* command = app.add_subcommand("network", "Make a network model for the simulated receiver from a plan");
    AddPlan(*command, arguments.model.plan);
    AddText(*command, "-o,--output", arguments.model.model, "Network model file to write")
        ->type_name("FILE")
        ->required();
    command->add_option("--seed", arguments.model.seed, "The same seed gives the same network")
        ->type_name("N")
        ->capture_default_str();
    command->add_flag("--clean", arguments.model.isClean, "Without impaired channels");
    command->add_flag("--force", arguments.model.forces, "Replace a file that exists");
    return command;
}

/// What is measured how, for scan and serve alike.
void AddScanOptions(CLI::App* command, Arguments& arguments)
{
    AddTexts(*command, "setup", arguments.scan.setups, "Setup file; several, one for each order of QAM, are one run")
        ->type_name("FILE")
        ->required();
    AddReceiver(*command, arguments);
    AddReceived(*command, arguments, arguments.scan.network);
    AddText(*command, "--channels", arguments.scan.channels,
            "Channels by label, number or MHz, like K45-K63,12,474 (all)")
        ->type_name("LIST");
    AddText(*command, "--parameters", arguments.scan.parameters, "Columns to show, like status,rflev,mer,ber")
        ->type_name("LIST");
    command
        ->add_option("--time-scale", arguments.scan.timeScale,
                     "What the simulated receiver's waiting takes: 1 is real time, 0.01 a hundredth; readings stay")
        ->type_name("X")
        ->check(CLI::Range(1e-6, 1.0).description("0.000001..1"));
    command->add_flag("--write", arguments.scan.writes, "Bring the receiver into the setup's state first");
    command->add_flag("--force", arguments.scan.forces, "Go on where the receiver cannot do the setup");
    command->add_flag("--as-is", arguments.scan.measuresAsIs, "Measure with the receiver's settings, not the setup's");
}

void AddScan(CLI::App& app, Arguments& arguments)
{
    CLI::App* const command = app.add_subcommand("scan", "Measure the channels of a setup and print the results");
    AddScanOptions(command, arguments);
    arguments.run.AddToScan(*command);
    command->footer("Ctrl+C ends the running channel and shows what was measured.");
}

void AddServe(CLI::App& app, Arguments& arguments)
{
    CLI::App* const command =
        app.add_subcommand("serve", "Scan again and again, and show it to browsers and monitoring systems");
    AddScanOptions(command, arguments);
    arguments.run.AddToServe(*command);
    AddText(*command, "--listen", arguments.serve.listen, "Where to serve; 0.0.0.0:8087 is for other machines too")
        ->type_name("ADDRESS:PORT")
        ->default_str("127.0.0.1:8087");
    AddText(*command, "--token-file", arguments.serve.tokenFile, "The token that readers have to show, in a file")
        ->type_name("FILE");
    AddTexts(*command, "--host-name", arguments.serve.hostNames,
             "A name under which it is reached, besides localhost and addresses")
        ->type_name("NAME")
        ->allow_extra_args(false);
    command->footer(
        "Ctrl+C ends it. Beyond this machine a token is needed: that of --token-file, of the variable\n"
        "TVNHOST_TOKEN, or one that is made and shown as a link.");
}

void AddSetupCommands(CLI::App& app, Arguments& arguments)
{
    CLI::App* const show = app.add_subcommand("show", "Print a setup: settings, channels, parameters, notes");
    CLI::App* const convert = app.add_subcommand("convert", "Bring a setup of any generation into the present format");
    CLI::App* const check = app.add_subcommand("check", "Name every doubtful thing in a setup by its line");
    for (CLI::App* const command : {show, convert, check}) {
        AddText(*command, "setup", arguments.setup, "Setup file")->type_name("FILE")->required();
    }
    const std::string question = "Ask whether the receiver can do it, too; =WHICH chooses one, as for scan";
    check->add_flag("--receiver", question)->each([&arguments](const std::string& which) {
        arguments.checksReceiver = true;
        arguments.receiver = which == "true" ? L"" : FromUtf8(which);
    });
    AddReceived(*check, arguments, arguments.network);
    for (const char* const received : {"--network", "--signals"}) {
        check->get_option(received)->needs("--receiver");
    }
    AddText(*convert, "-o,--output", arguments.output, "Setup file to write")->type_name("FILE")->required();
    convert->add_flag("--force", arguments.forces, "Replace a file that exists");
    check->footer(
        "Exit codes: 0 nothing doubtful, 1 something doubtful or beyond the receiver, 2 the setup cannot be loaded.");
}

void AddReceiverCommands(CLI::App& app, Arguments& arguments)
{
    CLI::App* const info = app.add_subcommand("info", "Say which receiver is connected and what it is fitted with");
    CLI::App* const read = app.add_subcommand("read", "Make a setup of the receiver's present settings");
    CLI::App* const write = app.add_subcommand("write", "Bring the receiver into a setup's state");
    AddText(*read, "-o,--output", arguments.output, "Setup file to write; one that exists keeps its channels")
        ->type_name("FILE")
        ->required();
    CLI::Option* const force = read->add_flag("--force", arguments.forces, "Replace what exists");
    read->add_flag("--channels-too", arguments.replacesChannels, "Replace the channels by the one that is tuned to")
        ->needs(force);
    AddText(*write, "setup", arguments.setup, "Setup file")->type_name("FILE")->required();
    for (CLI::App* const command : {info, read, write}) {
        AddReceiver(*command, arguments);
        AddReceived(*command, arguments, arguments.network);
    }
}

void AddEdit(CLI::App& app, Arguments& arguments)
{
    CLI::App* const command = app.add_subcommand("edit", "Edit a setup, or make a new one, in a dialog");
    AddText(*command, "setup", arguments.setup, "Setup file (none: a new setup)")->type_name("FILE");
    CLI::Option* const output =
        AddText(*command, "-o,--output", arguments.output, "Setup file to write (the one that is edited)")
            ->type_name("FILE");
    command->add_flag("--force", arguments.forces, "Replace a file that exists")->needs(output);
}

/// A unit's name for a keyboard without "µ".
std::wstring PlainLetters(std::wstring_view name)
{
    std::wstring plain(name);
    std::ranges::replace(plain, L'µ', L'u');
    return plain;
}

std::wstring LevelUnit(const std::wstring& name)
{
    for (const LevelUnitFact& known : LevelUnits()) {
        if (name == known.name || name == PlainLetters(known.name)) {
            return std::wstring(known.name);
        }
    }
    throw CLI::ValidationError("--level-unit", ToUtf8(PlainLetters(LevelUnitList()) + L", not " + name));
}

ConfigurationOptions Configuration(const Arguments& arguments, const std::wstring& setup)
{
    return {setup, arguments.network, arguments.signals, arguments.replacesChannels, arguments.forces};
}

/// The file, and then the receiver where it was asked for.
int CheckAll(const Arguments& arguments, Console& console)
{
    const int ofFile = Check(arguments.setup, console);
    if (!arguments.checksReceiver || ofFile == exitUnusable) {
        return ofFile;
    }
    return std::max(ofFile, CheckReceiver(Configuration(arguments, arguments.setup), console));
}

int Run(CLI::App& app, Arguments& arguments, Console& console)
{
    arguments.scan.signals = arguments.signals;
    if (app.got_subcommand("import")) {
        arguments.import.levelUnit = LevelUnit(arguments.levelUnit);
        return Import(arguments.import, console);
    }
    if (app.got_subcommand("network")) {
        return Network(arguments.model, console);
    }
    if (app.got_subcommand("scan")) {
        arguments.scan.hasTimeScale = app.get_subcommand("scan")->count("--time-scale") != 0;
        arguments.run.FillScan(*app.get_subcommand("scan"), arguments.scan);
        return Scan(arguments.scan, console);
    }
    if (app.got_subcommand("serve")) {
        arguments.scan.hasTimeScale = app.get_subcommand("serve")->count("--time-scale") != 0;
        arguments.scan.isServed = true;
        arguments.run.FillScan(*app.get_subcommand("serve"), arguments.scan);
        arguments.serve.scan = arguments.scan;
        return Serve(arguments.serve, console);
    }
    if (const std::optional<int> exitCode = arguments.run.Run(app, console)) {
        return *exitCode;
    }
    if (app.got_subcommand("show")) {
        return Show(arguments.setup, console);
    }
    if (app.got_subcommand("convert")) {
        return Convert(arguments.setup, arguments.output, arguments.forces, console);
    }
    if (app.got_subcommand("check")) {
        return CheckAll(arguments, console);
    }
    if (app.got_subcommand("info")) {
        return Info(Configuration(arguments, L""), console);
    }
    if (app.got_subcommand("read")) {
        return ReadReceiver(Configuration(arguments, arguments.output), console);
    }
    if (app.got_subcommand("write")) {
        return WriteReceiver(Configuration(arguments, arguments.setup), console);
    }
    if (app.got_subcommand("edit")) {
        return Edit({arguments.setup, arguments.output, arguments.forces}, console);
    }
    if (app.got_subcommand("doctor")) {
        return Doctor(arguments.asJson, console);
    }
    return app.got_subcommand("register") ? Register(arguments.forUser, console)
                                          : Unregister(arguments.forUser, console);
}

std::string WithoutLineEnd(std::string text)
{
    text.erase(text.find_last_not_of('\n') + 1);
    return text;
}

/// Help and version are results; anything else that the parser stops with is a wrong usage.
int Explain(const CLI::App& app, const CLI::ParseError& error, const std::vector<std::string>& words, Console& console)
{
    if (error.get_exit_code() != 0) {
        console.Notice(UsageComplaint(app, error, words));
        return exitUnusable;
    }
    std::ostringstream result, nothing;
    app.exit(error, result, nothing);
    console.Result(FromUtf8(WithoutLineEnd(result.str())) + L"\n");
    return exitDone;
}

int Main(const std::vector<std::string>& words, Console& console)
{
    Arguments arguments;
    CLI::App app("Reference host of the TVN2x measurement plug-in: scans the channels of a cable network.", "tvnhost");
    app.set_version_flag("--version", "tvnhost " TVN_VERSION);
    app.require_subcommand(1);
    // "/data/net.ini" is a path, not an option.
    app.allow_windows_style_options(false);
    app.get_formatter()->column_width(34);
    AddImport(app, arguments);
    AddNetwork(app, arguments);
    AddScan(app, arguments);
    AddServe(app, arguments);
    arguments.run.AddCommands(app);
    AddSetupCommands(app, arguments);
    AddReceiverCommands(app, arguments);
    AddEdit(app, arguments);
    CLI::App* const doctor = app.add_subcommand("doctor", "Say what is wrong with the installation, and what to do");
    doctor->add_flag("--json", arguments.asJson, "As JSON");
    AddReceiver(*doctor, arguments);
    for (CLI::App* const command : {app.add_subcommand("register", "Register the type library TVNINT for the machine"),
                                    app.add_subcommand("unregister", "Take that registration back")}) {
        command->add_flag("--user", arguments.forUser, "For this user alone, without an administrator");
    }
    app.footer(
        "Exit codes: 0 all channels synchronised, 1 some not synchronised or not measured,\n"
        "            or limits missed, 2 unusable input or usage, 3 stopped.\n"
        "Example:    tvnhost import at-Kabelsignal -o net.ini\n"
        "            tvnhost scan net.ini --channels 3-7");
    try {
        app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
        const Apartment apartment;
        // Whoever names recordings means the receiver that plays them.
        const bool plays = arguments.receiver.empty() && !arguments.signals.empty();
        const auto chosen = ChooseReceiver(plays ? L"recordings" : arguments.receiver);
        const int exitCode = Run(app, arguments, console);
        console.RequireResults();
        return exitCode;
    } catch (const CLI::ParseError& error) {
        return Explain(app, error, words, console);
    }
}

}  // namespace

}  // namespace tvn2x

int wmain(int count, wchar_t** words)
{
    tvn2x::Console console;
    try {
        tvn2x::com::Module::Instance(GetModuleHandleW(nullptr));
        std::vector<std::string> arguments;
        for (int i = 1; i < count; ++i) {
            arguments.push_back(tvn2x::ToUtf8(words[i]));
        }
        return tvn2x::Main(arguments, console);
    } catch (const tvn2x::RaisedError& error) {
        console.Notice(L"tvnhost: " + tvn2x::ErrorText(error));
    } catch (const std::bad_alloc&) {
        console.Notice(L"tvnhost: not enough memory. Close other programs, or measure fewer channels at a time.");
    } catch (const std::exception& error) {
        console.Notice(L"tvnhost: " + tvn2x::FromUtf8(error.what()));
    }
    return tvn2x::exitUnusable;
}
