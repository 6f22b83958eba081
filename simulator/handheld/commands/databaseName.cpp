#include "handheld/commands/databaseName.h"

#include "handheld/HandheldError.h"
#include "handheld/knownDatabases.h"

namespace tsr {

HandheldDatabase& findDatabase(Handheld& handheld, const std::string& name) {
    if (HandheldDatabase* database = handheld.find(name)) return *database;
    const KnownApplication* application = findApplication(name);
    HandheldDatabase* database = application ? handheld.find(application->database) : nullptr;
    if (!database)
        throw HandheldError("the handheld has no database " + (application ? application->database : name));
    return *database;
}

} // namespace tsr
