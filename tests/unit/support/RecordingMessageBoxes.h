#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "util/MessageBox.h"

namespace tvn2x {

/// Keeps what the user would have been shown.
class RecordingMessageBoxes : public MessageBoxes
{
public:
    struct Message
    {
        std::wstring text;
        std::wstring title;
        MessageIcon icon;
    };

    void Show(std::wstring_view text, std::wstring_view title, MessageIcon icon) override
    {
        messages.push_back({std::wstring(text), std::wstring(title), icon});
    }

    std::vector<Message> messages;
};

}  // namespace tvn2x
