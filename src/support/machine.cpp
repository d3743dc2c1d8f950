#include "support/machine.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>

#include <QCoreApplication>

#include "support/platform.h"
#include "support/shown_text.h"

namespace veldacov {

namespace {

struct Identity {
    QString productName = QStringLiteral("Norvik");
    QString executableName = QStringLiteral("<unnamed binary>");
};

Identity& identity() {
    static Identity state;
    return state;
}

ProgramEnd replacedEnd = nullptr;
void (*beforeMessages)() = nullptr;
std::size_t complaints = 0;
bool controlsEscaped = false;
void (*saveOutputs)() = nullptr;

// The last message when memory runs out, made while there is some. It stands from the start, untranslated.
std::string exhaustionLine = "Norvik veldacov - FATAL ERROR: No memory left\n";

enum class MessageKind : std::uint8_t { Fatal, Internal, User, Warning, Info };

// By MessageKind. The comments are part of the translation keys, their spelling included.
constexpr std::array<TranslatableText, 5> messagePrefixes = {{
    QT_TRANSLATE_NOOP3("Display Message", "%1 %2 - FATAL ERROR: %3\n",
                       "Used for fatal error message\n%1: product name\n%2: executable name\n%3: message to "
                       "display"),
    QT_TRANSLATE_NOOP3(
        "Display Message", "%1 %2 - INTERNAL ERROR: %3\n",
        "Used for internal error message\n%1: product name\n%2: executable name\n%3: message to "
        "display"),
    QT_TRANSLATE_NOOP3("Display Message", "%1 %2 - ERROR: %3\n",
                       "Used for user errors messages\n%1: product name\n%2: executable name\n%3: message to "
                       "display"),
    QT_TRANSLATE_NOOP3("Display Message", "%1 %2 - WARNING: %3\n",
                       "Used for warning messages\n%1: product name\n%2: executable name\n%3: message"),
    QT_TRANSLATE_NOOP3(
        "Display Message", "%1 %2 - INFO: %3\n",
        "Used for information messages%1:product name\n%2: executable name\n%3: message to print"),
}};

QString shownMessage(const QString& message) {
    if (!controlsEscaped) {
        return message;
    }
    const std::string shown = shownText(toLocal(message));
    return fromLocal(shown);
}

QString messageLine(MessageKind kind, const QString& message) {
    return translate("Display Message", messagePrefixes[static_cast<std::size_t>(kind)])
        .arg(identity().productName)
        .arg(identity().executableName)
        .arg(shownMessage(message));
}

void printMessage(const QString& lines) {
    if (beforeMessages != nullptr) {
        beforeMessages();
    }
    writeStandardError(lines);
}

void complain(MessageKind kind, const QString& message) {
    ++complaints;
    printMessage(messageLine(kind, message));
}

QString internalErrorText(const QString& message, const char* sourceFile, unsigned line) {
    const QString tail = sourceFile == nullptr
                             ? QStringLiteral("\n")
                             : QStringLiteral("[%1:%2]\n").arg(fromLocal(sourceFile)).arg(line);
    return messageLine(MessageKind::Internal, message) + tail;
}

void prepareExhaustionLine() {
    const QString text = translate("Fatal Error", "No memory left", "program failed on memory allocation");
    exhaustionLine = toLocal(messageLine(MessageKind::Fatal, text));
}

void runLastWrites() {
    if (saveOutputs != nullptr) {
        saveOutputs();
    }
}

} // namespace

QString translate(const char* context, const char* source, const char* comment) {
    return QCoreApplication::translate(context, source, comment);
}

QString translate(const char* context, const TranslatableText& text) {
    return translate(context, text.source, text.comment);
}

QString filled(QString text, std::initializer_list<std::string_view> values) {
    for (const std::string_view value : values) {
        text = text.arg(fromLocal(value));
    }
    return text;
}

QString fromLocal(std::string_view bytes) {
    // cppcheck-suppress invalidLifetime ; the result has characters of its own
    return QString::fromLocal8Bit(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

std::string toLocal(const QString& text) {
    return text.toLocal8Bit().toStdString();
}

void fatalError(const QString& message) {
    printMessage(messageLine(MessageKind::Fatal, message));
    endProgram(ExitStatus::FatalError);
}

void internalError(const QString& message, const char* sourceFile, unsigned line) {
    printMessage(internalErrorText(message, sourceFile, line));
    endProgram(ExitStatus::InternalError);
}

void userError(const QString& message) {
    complain(MessageKind::User, message);
}

void warningMessage(const QString& message) {
    complain(MessageKind::Warning, message);
}

void infoMessage(const QString& message) {
    printMessage(messageLine(MessageKind::Info, message));
}

std::size_t complaintsSoFar() {
    return complaints;
}

void escapeControlsInMessages() {
    controlsEscaped = true;
}

void setBeforeMessages(void (*makeRoom)()) {
    beforeMessages = makeRoom;
}

void writeStandardError(const QString& text) {
    // Nothing is left to tell the user when standard error itself fails.
    static_cast<void>(platform::writeAll(platform::standardError, toLocal(text)));
}

void endProgram(ExitStatus status) {
    if (replacedEnd != nullptr) {
        replacedEnd(status);
    }
    runLastWrites();
    std::exit(static_cast<int>(status));
}

void setProgramEnd(ProgramEnd end) {
    replacedEnd = end;
}

void setLastWrites(void (*save)()) {
    saveOutputs = save;
}

void setProductIdentity(const QString& productName, const QString& executableName) {
    identity().productName = productName;
    identity().executableName = executableName;
    prepareExhaustionLine();
    const QString text = translate("Internal Error", "Please, contact your support");
    platform::installCrashHandler(toLocal(internalErrorText(text, nullptr, 0)), runLastWrites,
                                  static_cast<int>(ExitStatus::InternalError));
}

QString getProductName() {
    return identity().productName;
}

void memoryExhausted() {
    std::set_new_handler(nullptr); // from now on a refusal is an exception, as the library expects
    static_cast<void>(platform::writeAll(platform::standardError, exhaustionLine));
    if (replacedEnd != nullptr) {
        endProgram(ExitStatus::FatalError);
    }
    runLastWrites();
    std::_Exit(static_cast<int>(ExitStatus::FatalError)); // what a normal exit runs may ask for memory, too
}

void installMemoryGuard() {
    std::set_new_handler(memoryExhausted);
    std::set_terminate([] {
        try {
            if (const std::exception_ptr thrown = std::current_exception()) {
                std::rethrow_exception(thrown);
            }
        } catch (const std::bad_alloc&) {
            memoryExhausted();
        } catch (...) { // nothing that this program expects
        }
        std::abort();
    });
}

RefusalIsHandled::RefusalIsHandled() : before_(std::set_new_handler(nullptr)) {}

RefusalIsHandled::~RefusalIsHandled() {
    std::set_new_handler(before_);
}

std::optional<std::string> getEnvironment(const char* name, Presence presence) {
    const char* value = std::getenv(name);
    if (value != nullptr) {
        return std::string(value);
    }
    if (presence == Presence::Mandatory) {
        fatalError(
            filled(translate("Assertion", "Environment variable not defined: %1", "%1 is the variable name"),
                   {name}));
    }
    return std::nullopt;
}

std::string duplicateUpper(std::string_view text) {
    std::string copy(text);
    for (char& character : copy) {
        character = upperCase(character);
    }
    return copy;
}

bool reportInFrench() {
    constexpr const char* variable = "VELDACOV_LAN";
    const std::optional<std::string> value = getEnvironment(variable);
    if (!value || *value == "GB") {
        return false;
    }
    if (*value == "FR" || *value == "FA") {
        return true;
    }
    warningMessage(QStringLiteral("%1 environment variable is badly defined,choice in GB (default), FR or FA")
                       .arg(variable));
    return false;
}

} // namespace veldacov
