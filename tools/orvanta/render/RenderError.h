// What can go wrong while a video is made.
#pragma once

#include <stdexcept>
#include <string>

namespace OrvantaNS::render {

/// A video that cannot be read. The message is complete but for the program's name.
class VideoError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A wish that the container, the codec or the picture cannot meet. The message is complete but for the program's name.
class SettingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A result that could not be made or written. The message is complete but for the program's name.
class RenderError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What FFmpeg's error code means, followed by the last error that FFmpeg itself told of on this thread's behalf.
std::string avErrorText(int code);

/// From here on FFmpeg's messages are kept instead of printed; `avErrorText` quotes the last error among them.
void keepAvMessages();

/// Throws `RenderError` with `what` and the error's text when `code` is an error, else returns it.
int checkAv(int code, const std::string& what);

} // namespace OrvantaNS::render
