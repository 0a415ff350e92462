// The fuzzing driver's way to the target that QUILLBAR_FUZZ names.

#include "fuzz/Targets.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdint>
#include <string_view>

using namespace randblatt;

namespace {

const FuzzTarget *chosen = nullptr;

} // namespace

// The names that the driver calls.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    const std::string_view name = std::getenv("QUILLBAR_FUZZ") ? std::getenv("QUILLBAR_FUZZ") : "";
    chosen = std::find_if(fuzzTargets.begin(), fuzzTargets.end(),
                          [&](const FuzzTarget &target) { return name == target.name; });
    if (chosen == fuzzTargets.end()) {
        std::fprintf(stderr, "QUILLBAR_FUZZ nennt kein Ziel\n");
        std::exit(2);
    }
    static const TestEnvironment environment;
    static int count = 1;
    static const QCoreApplication application(count, *argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    (void)argc;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    chosen->run(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    return 0;
}
