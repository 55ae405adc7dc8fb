#include "host/commands/ScanJournal.h"

#include "host/console/Files.h"

namespace tvn2x {
namespace {

void Tell(FileFault fault, Console& console)
{
    console.Notice(fault == FileFault::none
                       ? L"tvnhost: the journal takes lines again; nothing is missing in it"
                       : L"tvnhost: the journal cannot be written (" + std::wstring(FaultText(fault)) +
                             L"). The scan goes on and keeps its results in memory; the journal is tried again "
                             L"with each channel");
}

}  // namespace

ScanJournal::ScanJournal(const ScanOptions& options, size_t wholeBytes, Console& console)
{
    if (!options.journal.empty()) {
        file_.emplace(JournalFile::Create(AbsolutePath(options.journal)));
    } else if (!options.resume.empty()) {
        file_.emplace(JournalFile::Open(AbsolutePath(options.resume), wholeBytes));
    }
    if (file_) {
        journal_.emplace(*file_, [&console](FileFault fault) { Tell(fault, console); });
    }
}

void ScanJournal::Add(const std::string& line)
{
    if (journal_) {
        journal_->Add(line);
    }
}

}  // namespace tvn2x
