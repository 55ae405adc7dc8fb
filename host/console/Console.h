#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace tvn2x {

/// One of the process's output streams: wide characters on a console, UTF-8 with LF where it goes to a file or a pipe.
class OutputStream
{
public:
    explicit OutputStream(DWORD standardHandle);

    /// The system's error code where it does not take the whole text, 0 where it does.
    DWORD Write(std::wstring_view text);
    bool IsTerminal() const { return isTerminal_; }
    /// Columns of the terminal that a line may fill, 0 where it is none. The last column stays free: a character there
    /// would move the cursor to the next line.
    int32_t Width() const;

private:
    HANDLE handle_;
    bool isTerminal_;
};

/// Where the program talks to its user: results on the standard output; notices, progress and errors on the standard
/// error stream. Lines that a terminal is too narrow for are wrapped at words, and of what setups, plans and
/// instruments say no control character gets out.
class Console
{
public:
    /// What cannot be written costs the command nothing but this text: its files are still made. A reader that has read
    /// enough, or none at all, is no error.
    void Result(std::wstring_view text);
    /// Raises unusableInput where some result could not be written. For the end of a command.
    void RequireResults() const;
    void Notice(std::wstring_view line);  ///< one line, its end is added

    /// Shows a line that the next one replaces. On a terminal only.
    void Progress(std::wstring_view line);
    void ClearProgress();

    bool ShowsProgress() const { return notices_.IsTerminal(); }
    int32_t ProgressWidth() const { return notices_.Width(); }
    int32_t ResultWidth() const { return results_.Width(); }

private:
    OutputStream results_{STD_OUTPUT_HANDLE};
    OutputStream notices_{STD_ERROR_HANDLE};
    std::wstring progress_;        ///< the line that is shown, "" for none
    DWORD fault_ = ERROR_SUCCESS;  ///< the first one of the results
};

}  // namespace tvn2x
