#include "com/Entry.h"

namespace tvn2x::com {
namespace {

/// The thread's innermost entry whose caller computes in another state. A slot of the system's, because thread_local
/// leaves destructors behind in threads that outlive the library. Where the system has none left, it is always empty.
class EntryOfThread
{
public:
    EntryOfThread(const EntryOfThread&) = delete;
    EntryOfThread& operator=(const EntryOfThread&) = delete;
    EntryOfThread() = default;
    ~EntryOfThread() { TlsFree(slot_); }

    Entry* Get() const { return static_cast<Entry*>(TlsGetValue(slot_)); }
    void Set(Entry* entry) const { TlsSetValue(slot_, entry); }

private:
    const DWORD slot_ = TlsAlloc();
};

const EntryOfThread innermost;

}  // namespace

Entry::Entry() noexcept : differs_(!floatingPoint_.Callers().ComputesLike(ownFloatingPoint))
{
    if (differs_) {
        outer_ = innermost.Get();
        innermost.Set(this);
    }
}

Entry::~Entry()
{
    if (differs_) {
        innermost.Set(outer_);
    }
}

HostsTurn::HostsTurn() noexcept : entry_(innermost.Get())
{
    if (entry_) {
        // The host may call back: then it is the caller anew.
        innermost.Set(nullptr);
        entry_->floatingPoint_.Callers().Load();
    }
}

HostsTurn::~HostsTurn()
{
    if (entry_) {
        innermost.Set(entry_);
    }
}

}  // namespace tvn2x::com
