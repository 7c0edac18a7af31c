#include "FileAccess.h"

#include "jet/Error.h"
#include "store/FileError.h"

#include <ctime>
#include <new>

namespace velmora::tool {

namespace {

const char* causeOf(jet::ErrorCode code)
{
    switch (code) {
    case jet::ErrorCode::NotAValidPassword:
        return "wrong password";
    case jet::ErrorCode::CannotWrite:
        return "cannot write the file";
    case jet::ErrorCode::DamagedFile:
        return "damaged or not a Jet database";
    }
    return "error";
}

} // namespace

void refuseExisting(const std::filesystem::path& path)
{
    std::error_code error;
    if (std::filesystem::symlink_status(path, error).type() != std::filesystem::file_type::not_found)
        throw ToolError("the file already exists; it is left as it is");
}

double jetNow()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    // Seconds since 1970-01-01 of the local wall-clock time, then days since 1899-12-30.
    const std::time_t wallClock = timegm(&local);
    return 25569.0 + static_cast<double>(wallClock) / 86400.0;
}

std::string describeFailure(const std::exception& error)
{
    if (dynamic_cast<const std::bad_alloc*>(&error))
        return "not enough memory";
    if (const auto* fileError = dynamic_cast<const store::FileError*>(&error))
        return std::string(fileError->isWrite() ? "cannot write the file (" : "cannot read the file (") +
               fileError->detail() + ")";
    const auto* jetError = dynamic_cast<const jet::Error*>(&error);
    if (!jetError)
        return dynamic_cast<const ToolError*>(&error) ? error.what() : "unexpected error";
    return std::string(causeOf(jetError->code())) + " (" + jetError->what() + ")";
}

} // namespace velmora::tool
