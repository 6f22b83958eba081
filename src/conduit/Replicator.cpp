#include "conduit/Replicator.h"

#include "conduit/guarded.h"
#include "device/deviceStatus.h"
#include "foundation/DateTime.h"
#include "foundation/desktopTimeZone.h"
#include "foundation/fileVersion.h"
#include "foundation/messages.h"
#include "foundation/utcNow.h"
#include "platform/debugSwitch.h"
#include "platform/moduleName.h"

namespace tsr {

namespace {

// The most entries in one fixup record. Compared as texts, deliberately: 10.0 counts as earlier than 4.0, and
// the "?.?" of a device that doesn't tell as later.
std::size_t fixupLimitFor(const std::string& osVersion) { return osVersion < "4.0" ? 30 : 100; }

DateTime localNow() { return DateTime(utcNow(), desktopTimeZone()); }

} // namespace

Replicator::Replicator(const ApplicationTraits& traits, const CountedPtr<PalmProxy>& palm)
    : traits_(traits), server_(new ServerConnection), palm_(palm),
      log_(platform::debugLogSelected() ? static_cast<std::ostream*>(&debugLog_) : &nullLog_),
      fixupLimit_(0) {}

bool Replicator::categoryOfClass(const std::string&, std::uint8_t&) { return false; }

CountedPtr<PalmRecordBuffer> Replicator::appInfoToWrite() { return nullptr; }

std::int32_t Replicator::run(ReplicationType requestedType) {
    try {
        prepare();
        readConfiguration(requestedType);
        if (endsWithoutConnection()) return 0;
        connect();
        guarded(Message::ClearFailed, [this] {
            if (storedType() != ReplicationType::Clear) return;
            palm_->clearApplication();
            palm_->deleteSyncDatabase();
        });
        const std::vector<std::string> classes = classNames();
        prepareData(classes);
        if (!classes.empty()) {
            exchange(classes);
            writeBack();
        }
        finish();
    } catch (const Error& error) {
        abort(error);
        return 0;
    } catch (...) {
        abort(GeneralError(Message::UnknownException));
        return 0;
    }
    palm_->logToHotSync(traits_.displayName, HotSyncActivity::Finished);
    return 0;
}

void Replicator::prepare() {
    try {
        debugLog_.open(traits_.displayName);
    } catch (...) { // a session without a trace is better than none
    }
    palm_->logToHotSync(traits_.displayName, HotSyncActivity::Started);
    log() << "#t ----------------------------------------------\n";
    // What may fail is asked for before its line begins, or else the error's chain would go on in that line.
    const DateTime startTime = localNow();
    log() << "#t $a replication started at $t" << Tag('a') << traits_.displayName << Tag('t') << startTime
          << '\n';
    const std::string apiVersion = apiVersionText();
    log() << "#t SyncManager API Version: " << apiVersion << '\n';
    const std::string osVersion = osVersionText();
    fixupLimit_ = fixupLimitFor(osVersion);
    log() << "#t PalmOS Version: " << osVersion << '\n';
    log() << "#t Conduit version: " << fileVersionText(moduleName) << '\n';
    palm_->setApplication(traits_.displayName, traits_.appDbCreator, traits_.appDbName, traits_.appDbType,
                          traits_.syncDbCreator, traits_.syncDbName, traits_.syncDbType);
}

void Replicator::readConfiguration(ReplicationType requestedType) {
    guarded(Message::PreferencesFailed, [this] {
        log() << "#t Getting application preferences\n";
        readApplicationPreferences();
    });
    guarded(Message::ConfigurationPhaseFailed, [this, requestedType] {
        replicationType_ = requestedType;
        log() << "#t Getting palm configuration\n";
        try {
            config_ = palm_->readConfiguration(traits_.configCategory());
        } catch (const Error& error) {
            throw SessionTerminatedError(Message::RetrieveConfigurationFailed, error);
        }
        if (storedType() == ReplicationType::MustChoose) throw GeneralError(Message::MustChooseType);
        if (storedType() != ReplicationType::Normal) replicationType_ = storedType();
        log() << "#t Replication type: " << replicationTypeName(replicationType_) << '\n';
    });
}

bool Replicator::endsWithoutConnection() {
    if (replicationType_ != ReplicationType::None) return false;
    palm_->logToHotSync(loadMessage(Message::ConfiguredToDoNothing), HotSyncActivity::Text);
    return true;
}

void Replicator::connect() {
    guarded(Message::ConnectFailed, [this] {
        log() << "#t Connecting to Tessera server (ip=$a, port=$p)" << Tag('a') << config_->serverAddress()
              << Tag('p') << config_->serverPort() << '\n';
        server_->connect(account());
        log() << "#t Connected.\n";
    });
    guarded(Message::AutoConfigureFailed, [this] {
        if (!config_->hasUserName()) fetchUserName();
    });
    guarded(Message::AuthenticateFailed, [this] { server_->authenticate(account()); });
    guarded(Message::TimeZoneFailed, [this] { timeZone_ = server_->getTimeZone(); });
}

void Replicator::fetchUserName() {
    const std::string name = server_->findUserName();
    if (name.empty()) throw GeneralError(Message::NoUserName);
    log() << "#t User name auto configured as $u" << Tag('u') << name << '\n';
    config_->setUserName(name);
    palm_->writeConfiguration(*config_);
}

void Replicator::prepareData(const std::vector<std::string>& classes) {
    guarded(Message::ReadStateFailed, [this, &classes] {
        palm_->showProgress(Message::ReadingState);
        if (!classes.empty()) state_ = makeCounted<ReplicationState>(log(), *palm_, 0, fixupLimit_);
    });
    guarded(Message::PreReplicateFailed, [this] { preReplicate(); });
    guarded(Message::ResetFailed, [this] {
        if (storedType() == ReplicationType::Reset && state_) state_->reset();
    });
}

void Replicator::exchange(const std::vector<std::string>& classes) {
    guarded(Message::GatherFailed, [this] {
        palm_->showProgress(Message::ReadingModified);
        gatherModified();
    });
    guarded(Message::SendDeletionsFailed, [this] {
        palm_->showProgress(Message::ProcessingDeleted);
        sendDeletions();
    });
    for (const std::string& className : classes) {
        try {
            replicateClass(className);
        } catch (const Error& error) {
            throw GeneralError(Message::ReplicateClassFailed, error) << Tag('c') << className;
        } catch (...) {
            throw GeneralError(Message::ReplicateClassFailed, GeneralError(Message::UnknownException))
                << Tag('c') << className;
        }
    }
    guarded(Message::WriteAppInfoFailed, [this] {
        const CountedPtr<PalmRecordBuffer> block = appInfoToWrite();
        if (block) palm_->writeAppInfoBlock(*block);
    });
}

void Replicator::replicateClass(const std::string& className) {
    std::string token;
    guarded(Message::SendNewRecordsFailed, [&] {
        palm_->showProgress(Message::SendingNew);
        sendNewRecords(className);
    });
    guarded(Message::SendReplicationInfoFailed, [&] {
        palm_->showProgress(Message::SendingInfo);
        token = sendReplicationEntries(className);
    });
    guarded(Message::SendAnomaliesFailed, [&] {
        palm_->showProgress(Message::SendingAnomalies);
        sendItems(className, token, true);
    });
    guarded(Message::SendItemsFailed, [&] {
        palm_->showProgress(Message::SendingModified);
        sendItems(className, token, false);
    });
    guarded(Message::ReceiveItemsFailed, [&] {
        palm_->showProgress(Message::ReceivingItems);
        receiveItems(className, token);
    });
    guarded(Message::ReceiveDeletionsFailed, [&] {
        palm_->showProgress(Message::ReceivingDeletions);
        receiveDeletions(token);
    });
}

// In this order, so that the state on the device is safe before the device copies the records.
void Replicator::writeBack() {
    guarded(Message::WriteStateFailed, [this] {
        palm_->showProgress(Message::WritingState);
        state_->rewrite(*palm_);
    });
    guarded(Message::CopyRecordsFailed, [this] {
        palm_->showProgress(Message::CopyingRecords);
        log() << "#t Copying from sync db to appl db\n";
        copyFromSyncDb();
    });
    guarded(Message::ResetFlagsFailed, [this] {
        log() << "#t Resetting sync flags\n";
        resetFlags();
    });
    guarded(Message::ResetTypeFailed, [this] {
        if (replicationType_ != ReplicationType::Normal) palm_->resetReplicationType(*config_);
    });
    guarded(Message::SessionErrorsFailed, [this] { logSessionErrors(); });
}

void Replicator::resetFlags() {
    // Deliberate, also when nothing else changed: a record that comes and goes at once.
    PalmRecordBuffer record;
    record.appendByte(0);
    palm_->deleteRecord(palm_->writeRecord(0, record));
    palm_->purgeAndResetFlags();
    palm_->releaseDatabase();
}

void Replicator::logSessionErrors() {
    const std::vector<std::string> errors = server_->getSessionErrors();
    if (errors.empty()) return;
    log() << "#t ------ Session errors begin -----------------\n";
    for (const std::string& error : errors) log() << "#t $s" << Tag('s') << error << '\n';
    log() << "#t ------ Session errors end -------------------\n";
}

void Replicator::finish() {
    try {
        server_->close();
    } catch (...) { // the work is done; the connection goes with the replicator
    }
    const DateTime finishTime = localNow();
    log() << "#t $a replication finished at $t" << Tag('a') << traits_.displayName << Tag('t') << finishTime
          << '\n';
}

void Replicator::abort(const Error& error) {
    logErrorChain(error);
    palm_->logToHotSync(traits_.displayName, HotSyncActivity::Aborted);
}

void Replicator::logErrorChain(const Error& error) {
    std::size_t depth = 1;
    for (const Error* link = &error; link != nullptr; link = link->cause().get(), ++depth) {
        const std::string line = std::string(2 * depth, '*') + ' ' + errorText(*link);
        palm_->logToHotSync(line, HotSyncActivity::Warning);
        log() << "#t " << line << '\n'; // as text: marks in it are treated as placeholders here
    }
}

ServerAccount Replicator::account() const {
    ServerAccount account;
    account.serverAddress = config_->serverAddress();
    account.serverPort = config_->serverPort();
    account.userName = config_->userName();
    account.password = config_->password();
    account.deviceTimeText = config_->deviceTimeText();
    account.conflictRule = config_->conflictRule();
    return account;
}

NotesItem Replicator::itemOf(const NotesApplicationRecord& record) const {
    NotesItem item;
    record.addTo(item, timeZone_);
    return item;
}

} // namespace tsr
