#include "simulator/model/ModelParser.h"

#include "text/Blanks.h"
#include "text/TextInput.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

constexpr size_t maxBytes = 16 << 20;
constexpr std::wstring_view needed = L"a network model has a section [Network] and one section [Channel n] per channel";

}  // namespace

int32_t ChannelNumber(std::wstring_view section)
{
    constexpr std::wstring_view prefix = L"channel ";
    constexpr size_t maxDigits = 4;
    const std::wstring folded = FoldName(TrimBlanks(section));
    if (!folded.starts_with(prefix)) {
        return 0;
    }
    const std::wstring_view digits = TrimBlanks(std::wstring_view(folded).substr(prefix.size()));
    if (digits.empty() || digits.size() > maxDigits || digits.find_first_not_of(L"0123456789") != digits.npos) {
        return 0;
    }
    int32_t number = 0;
    for (const wchar_t digit : digits) {
        number = number * 10 + (digit - L'0');
    }
    return number;
}

std::wstring UnknownSection(std::wstring_view section)
{
    return L"unknown section " + Quoted(section) + L"; write Network, or Channel and a number from 1 to 9999";
}

std::wstring AboutValue(std::wstring_view section, std::wstring_view key, const std::wstring& complaint)
{
    return L"\"" + std::wstring(key) + L"\" in [" + std::wstring(section) + L"]: " + complaint;
}

NetworkModel ModelParser::Parse(std::string_view text)
{
    CheckText(text);
    LineReader lines(text);
    for (std::string_view line; lines.Next(line);) {
        line_ = lines.Number();
        TakeLine(line);
    }
    CloseChannel();
    if (model_.channels_.empty()) {
        Fail(0, L"there is no channel in the file; " + std::wstring(needed));
    }
    return std::move(model_);
}

void ModelParser::CheckText(std::string_view text) const
{
    if (text.empty()) {
        Fail(0, L"the file is empty; " + std::wstring(needed));
    }
    if (text.size() > maxBytes) {
        Fail(0, L"the file is larger than 16 MB; " + std::wstring(needed));
    }
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
        Fail(0, L"the file is in UTF-16; save it as UTF-8");
    }
}

void ModelParser::TakeLine(std::string_view bytes)
{
    for (const char byte : bytes) {
        if (static_cast<unsigned char>(byte) < ' ' && byte != '\t' && byte != '\r') {
            Fail(line_, L"there is a control character in this line, so this is no text file; " + std::wstring(needed));
        }
    }
    const std::wstring decoded = FromUtf8(bytes);
    if (ToUtf8(decoded) != bytes) {
        Fail(line_, L"this line is not UTF-8; save the file as UTF-8");
    }
    const std::wstring_view line = decoded;
    if (line.empty() || line.front() == L';' || line.front() == L'#') {
        return;
    }
    if (line.front() == L'[') {
        OpenSection(line);
    } else {
        TakeKey(line);
    }
}

void ModelParser::OpenSection(std::wstring_view line)
{
    CloseChannel();
    if (line.back() != L']') {
        Fail(line_, L"the section name " + Quoted(line) + L" does not end; close it with \"]\"");
    }
    section_ = TrimBlanks(line.substr(1, line.size() - 2));
    sectionLine_ = line_;
    keysSeen_.clear();
    if (FoldName(section_) == L"network") {
        if (networkSeen_) {
            Fail(line_, L"[Network] stands here a second time; put its keys into one section");
        }
        networkSeen_ = true;
        return;
    }
    const int32_t number = ChannelNumber(section_);
    if (number == 0) {
        Fail(line_, UnknownSection(section_));
    }
    const auto [place, isNew] = channelLines_.emplace(number, line_);
    if (!isNew) {
        Fail(line_, L"[" + section_ + L"] stands in line " + std::to_wstring(place->second) +
                        L" already; give each channel a number of its own");
    }
    inChannel_ = true;
    model_.channels_.emplace_back().number = number;
}

void ModelParser::TakeKey(std::wstring_view line)
{
    const size_t equals = line.find(L'=');
    if (equals == line.npos) {
        Fail(line_, Quoted(line) + L" is neither a section nor a key; write key=value, or begin a comment with \";\"");
    }
    const std::wstring_view key = TrimBlanks(line.substr(0, equals));
    if (section_.empty()) {
        Fail(line_, L"the key " + Quoted(key) + L" stands before any section; " + std::wstring(needed));
    }
    if (!keysSeen_.insert(FoldName(key)).second) {
        Fail(line_, Quoted(key) + L" stands in [" + section_ + L"] a second time; keep one of the two");
    }
    const std::wstring_view text = line.substr(equals + 1);
    if (inChannel_) {
        TakeValue(ChannelKeys(), model_.channels_.back(), key, text);
    } else {
        TakeValue(NetworkKeys(), model_.network_, key, text);
    }
}

template <class Section>
void ModelParser::TakeValue(std::span<const ModelKey<Section>> keys, Section& target, std::wstring_view key,
                            std::wstring_view text)
{
    const ModelKey<Section>* known = FindKey(keys, key);
    if (known == nullptr) {
        Fail(line_, UnknownKey(key, section_, keys));
    }
    if (const auto complaint = Store(*known, target, text)) {
        Fail(line_, AboutValue(section_, known->name, *complaint));
    }
}

void ModelParser::CloseChannel()
{
    if (!inChannel_) {
        return;
    }
    inChannel_ = false;
    const ChannelModel& channel = model_.channels_.back();
    if (channel.frequency == 0) {
        Fail(sectionLine_, L"[" + section_ + L"] has no frequency; add the key Frequency (MHz)");
    }
    const auto [place, isNew] = frequencies_.emplace(channel.frequency, channel.number);
    if (!isNew) {
        Fail(sectionLine_, L"[" + section_ + L"] has the frequency of [Channel " + std::to_wstring(place->second) +
                               L"]; two channels cannot share one");
    }
}

void ModelParser::Fail(int line, const std::wstring& text) const
{
    throw ModelError(file_, line, text);
}

}  // namespace tvn2x
