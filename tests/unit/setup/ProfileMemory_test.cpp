// How far files of the worst shapes let the process grow. Every block that this program takes is counted.

#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <string>
#include <tuple>

#include "setup/SetupFile.h"
#include "support/FixedLocale.h"
#include "support/MemoryFiles.h"
#include "support/RecordingMessageBoxes.h"
#include "util/RaisedError.h"

namespace {

size_t held = 0;
size_t mostHeld = 0;

}  // namespace

void* operator new(size_t size, const std::nothrow_t&) noexcept
{
    void* const block = std::malloc(size);
    held += block == nullptr ? 0 : malloc_usable_size(block);
    mostHeld = std::max(mostHeld, held);
    return block;
}

void* operator new(size_t size)
{
    void* const block = operator new(size, std::nothrow);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void operator delete(void* block) noexcept
{
    held -= block == nullptr ? 0 : malloc_usable_size(block);
    std::free(block);
}

void operator delete(void* block, size_t) noexcept
{
    operator delete(block);
}

namespace tvn2x {
namespace {

constexpr size_t fileSize = 1'000'000;
const std::wstring path = L"C:\\data\\net.ini";
const std::string head = "[Application]\r\nName=P\r\nVersion=2.0\r\n[Hardware]\r\nModel=2x\r\nMode=4\r\n";

std::string Filled(std::string content, const std::string& shape)
{
    content.reserve(fileSize);
    while (content.size() + shape.size() <= fileSize) {
        content += shape;
    }
    return content;
}

/// Lines of as few bytes as can be, each with a name of its own.
std::string Distinct(std::string content, const std::string& opener,
                     std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789!#$%&()*+,-./:<>?@^_{|}~")
{
    content.reserve(fileSize);
    for (size_t number = 0; content.size() + 8 <= fileSize; ++number) {
        content += opener;
        for (size_t rest = number + 1; rest != 0; rest /= letters.size()) {
            content += letters[rest % letters.size()];
        }
        content += '\n';
    }
    return content;
}

/// As many channels as so many bytes can hold.
std::string Rows()
{
    std::string content = head + "[Frequency List]\r\nCount=" + std::to_string(fileSize / 23) + "\r\n";
    content.reserve(fileSize);
    for (int row = 1; content.size() + 24 <= fileSize; ++row) {
        content += "Frequency   " + std::string(row < 10 ? "0" : "") + std::to_string(row) + "=1\n";
    }
    return content;
}

TEST(ProfileMemory, NoFileMakesTheLoaderGrowBeyondASmallMultipleOfItsSize)
{
    const std::string list = head + "[Frequency List]\r\nCount=1\r\n";
    // The file itself counts for one. A character beyond ASCII may take three bytes for its one.
    constexpr double most = 4.2;
    constexpr double mostBeyond = 6;
    constexpr double once = 800'000;  // whatever the file's size
    std::string beyond;
    for (int byte = 0x80; byte < 0x100; ++byte) {
        beyond += static_cast<char>(byte);
    }
    const std::tuple<const char*, std::string, double> cases[] = {
        {"no section", Filled("", "x\n"), most},
        {"keys in a section that nobody reads", Distinct(head + "[Other]\n", ""), most},
        {"one long line", Filled(head + "[Frequency List]\r\nCount=1\r\nUser Field  01=", "x"), most},
        {"nothing but line ends", Filled(list, "\n"), most},
        {"the same key again and again", Filled(list, "a\n"), most},
        {"the empty key again and again", Filled(list, "=\n"), most},
        {"distinct keys of a section that is read", Distinct(list, ""), most},
        {"distinct sections", Distinct(head, "["), most},
        {"the same section again and again", Filled(head, "[\n"), most},
        {"rows", Rows(), most},
        {"one long line beyond ASCII", Filled(head, "\x80"), mostBeyond},
        {"lines beyond ASCII", Filled(list, "\x80\n"), mostBeyond},
        {"distinct keys beyond ASCII", Distinct(list, "", beyond), mostBeyond},
    };
    for (const auto& [name, content, limit] : cases) {
        MemoryFiles files;
        files.Put(path, content);
        RecordingMessageBoxes messages;
        const FixedLocale locale;
        const size_t before = held;
        mostHeld = held;
        try {
            SetupDocument document;
            std::wstring model = L"2x";
            int32_t mode = 4;
            LoadSetup(document, {files, messages, locale}, L"P", path, model, mode);
        } catch (const RaisedError&) {
        }
        EXPECT_LE(static_cast<double>(mostHeld - before), limit * fileSize + once) << name;
    }
}

}  // namespace
}  // namespace tvn2x
