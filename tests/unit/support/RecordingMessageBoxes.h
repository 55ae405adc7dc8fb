#pragma once

#include <functional>
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
        if (onShow) {
            onShow();
        }
    }

    std::vector<Message> messages;
    std::function<void()> onShow;  ///< what happens while a message is open
};

}  // namespace tvn2x
