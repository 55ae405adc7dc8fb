#pragma once

#include <string>
#include <string_view>

namespace tvn2x {

/// What a message is, as its symbol tells.
enum class MessageIcon
{
    information,
    warning
};

/// Where messages to the user go. The system's are modal boxes with an OK button; tests collect them.
class MessageBoxes
{
public:
    virtual ~MessageBoxes() = default;
    virtual void Show(std::wstring_view text, std::wstring_view title, MessageIcon icon) = 0;
};

/// Modal boxes in a program with windows. Lines on the standard error stream where nobody could close a box: in a
/// program of the console (unless the calling thread has an active window), in a service, and on other systems than
/// Windows.
MessageBoxes& SystemMessageBoxes();

/// A message as a line for an error stream: "Save Results: warning: Destination disk drive is full."
std::wstring MessageLine(std::wstring_view text, std::wstring_view title, MessageIcon icon);

}  // namespace tvn2x
