// Any bytes as a setup file in one of three code pages: refused, or loaded, as the host's look at the file says; what
// was loaded is saved, and comes back as it was.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

#include "Fuzz.h"
#include "host/setup/SetupInspection.h"
#include "setup/SetupFile.h"
#include "support/DocumentParts.h"
#include "support/FixedLocale.h"
#include "support/MemoryFiles.h"
#include "support/RecordingMessageBoxes.h"
#include "util/RaisedError.h"

namespace {

using namespace tvn2x;
using fuzz::PageFor;
using fuzz::Require;

const std::wstring original = L"C:\\data\\net.ini";
const std::wstring copy = L"C:\\data\\copy.ini";
const std::wstring product = L"TVN Host";

bool Near(double left, double right, double step)
{
    return std::abs(left - right) <= step + std::abs(left) * 1e-14;
}

void RequireSame(const SetupDocument& left, const SetupDocument& right)
{
    Require(left.ListSize() == right.ListSize(), "the number of channels");
    for (int32_t row = 1; row <= left.ListSize(); ++row) {
        Require(Near(left.Frequency(row), right.Frequency(row), 0.5001e-7), "a frequency");
        Require(Near(left.SymbolRate(row), right.SymbolRate(row), 0.5001e-3), "a symbol rate");
        Require(left.UserField(row) == right.UserField(row), "a user field");
    }
    // A parameter without a position is given one when the file is read.
    SetupDocument placed = left;
    for (int32_t parameter = 1; parameter <= std::min(left.Count(), right.Count()); ++parameter) {
        if (left.Order(parameter) == -1) {
            placed.Order(parameter, right.Order(parameter));
        }
    }
    Require(ParametersOf(placed) == ParametersOf(right), "the parameters");
    Require(SettingsOf(left) == SettingsOf(right), "a setting");
    Require(Near(left.DefaultSymbolRate(), right.DefaultSymbolRate(), 0.5001e-3), "the default symbol rate");
}

class Trial
{
public:
    Trial(bool comma, const CodePage& page) : locale_(comma ? CommaLocale() : FixedLocale()), page_(page) {}

    void Run(const std::string& content)
    {
        files_.Put(original, content);
        SetupDocument document;
        const bool isLoaded = Load(original, document);
        const SetupInspection inspection = InspectSetup(content, product, page_);
        Require(inspection.IsUsable() == isLoaded, "the host's verdict");
        if (!isLoaded) {
            RequireSame(SetupDocument(), document);
            return;
        }
        Require(inspection.channels == std::max(document.ListSize(), 0), "the host's number of channels");
        Require(inspection.isBackup == document.isBackup, "what the host takes for a backup copy");
        Require(SaveSetup(document, environment_, product, L"2.0", copy), "saved as a new file");
        const SetupDocument again = Reloaded(copy);
        RequireSame(document, again);
        RequireSettled(copy, again);

        if (!SaveSetup(document, environment_, product, L"2.0", original)) {
            Require(!content.starts_with("\xFF\xFE") && !page_.DecodeStrictly(content), "saved in place");
            return;
        }
        RequireSame(document, Reloaded(original));
        RequireSettled(original, Reloaded(original));
        Require(messages_.messages.empty(), "nothing is shown");
        Require(files_.Paths().size() == 2, "no other file is left");
    }

private:
    bool Load(const std::wstring& path, SetupDocument& document)
    {
        std::wstring model = L"2x";
        int32_t mode = 4;
        try {
            return LoadSetup(document, environment_, product, path, model, mode);
        } catch (const RaisedError& raised) {
            Require(raised.number == error::typeMismatch || raised.number == error::invalidPropertyValue, "the error");
            return false;
        }
    }
    SetupDocument Reloaded(const std::wstring& path)
    {
        SetupDocument document;
        Require(Load(path, document), "what was saved loads");
        return document;
    }
    /// Saving what was loaded from a saved file changes nothing more.
    void RequireSettled(const std::wstring& path, SetupDocument document)
    {
        Require(SaveSetup(document, environment_, product, L"2.0", path), "saved again");
        const std::string bytes = files_.Content(path);
        SetupDocument again = Reloaded(path);
        Require(SaveSetup(again, environment_, product, L"2.0", path), "saved once more");
        Require(bytes == files_.Content(path), "the same bytes");
    }

    MemoryFiles files_;
    RecordingMessageBoxes messages_;
    FixedLocale locale_;
    const CodePage& page_;
    SetupEnvironment environment_{files_, messages_, locale_, page_};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Trial(size % 2 != 0, PageFor(size / 2)).Run(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
