#include "util/MessageBox.h"

namespace tvn2x {

std::wstring MessageLine(std::wstring_view text, std::wstring_view title, MessageIcon icon)
{
    std::wstring line(title);
    line += icon == MessageIcon::warning ? L": warning: " : L": ";
    line += text;
    return line += L'\n';
}

}  // namespace tvn2x
