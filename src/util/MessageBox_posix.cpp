#include <cstdio>
#include <string>

#include "util/Encoding.h"
#include "util/MessageBox.h"

namespace tvn2x {
namespace {

/// Messages as lines on the error stream.
class ErrorStreamMessages : public MessageBoxes
{
public:
    void Show(std::wstring_view text, std::wstring_view title, MessageIcon icon) override
    {
        const std::string line = ToUtf8(MessageLine(text, title, icon));
        std::fwrite(line.data(), 1, line.size(), stderr);
    }
};

}  // namespace

MessageBoxes& SystemMessageBoxes()
{
    static ErrorStreamMessages messages;
    return messages;
}

}  // namespace tvn2x
