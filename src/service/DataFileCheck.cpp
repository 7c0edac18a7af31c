#include "DataFileCheck.h"

#include "ServiceTexts.h"
#include "jet/Error.h"
#include "jet/Reader.h"
#include "store/FailureCause.h"
#include "store/Schema.h"

namespace service {

std::optional<QString> dataFileProblem(std::span<const std::uint8_t> bytes, jet::Database* decoded)
{
    jet::Database db;
    try {
        db = jet::readDatabase(bytes, store::kFilePassword);
    } catch (const jet::Error& e) {
        if (e.code() == jet::ErrorCode::NotAValidPassword)
            return QString::fromUtf8(texts::causeOtherPassword);
        return store::describeJetError(e);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        return store::describeFailure(e);
    }
    // A file without a password opens with any; the data file has one.
    if (db.password != store::kFilePassword)
        return QString::fromUtf8(texts::causeOtherPassword);
    if (const std::string mismatch = store::schemaMismatch(db); !mismatch.empty())
        return QString::fromStdString(mismatch);
    if (decoded)
        *decoded = std::move(db);
    return std::nullopt;
}

} // namespace service
