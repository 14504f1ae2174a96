// vardelin-operations FILE.mdb OP REPS [OUT.mdb]: does OP REPS times, opening and closing the file each time.
// Prints "OP SECONDS CPU_SECONDS" for each run, and once "check OP key=value ..." with what the last one
// found. Exit 2 for an OP that it doesn't know, or too few arguments.

#include "benchmarks/Figures.h"
#include "benchmarks/Operations.h"

#include <QFile>
#include <cstdio>
#include <cstdlib>
#include <exception>

using namespace vardelin::bench;

namespace {

void printCheck(const Operation &operation, const Check &check)
{
    std::printf("check %s", operation.name.data());
    for (const auto &[name, value] : check)
        std::printf(" %s=%lld", name.data(), static_cast<long long>(value));
    std::printf("\n");
}

void run(const Operation &operation, const QString &file, int times, const QString &out)
{
    Check check;
    for (int i = 0; i < times; ++i) {
        if (operation.kind == Operation::Kind::MakesFile)
            QFile::remove(out);
        const Figures figures = figuresOf([&] { check = operation.run(file, out); });
        std::printf("%s %.6f %.6f\n", operation.name.data(), figures.seconds, figures.cpuSeconds);
        std::fflush(stdout);
    }
    printCheck(operation, check);
}

} // namespace

int main(int argc, char **argv)
{
    const Operation *operation = argc > 2 ? findOperation(argv[2]) : nullptr;
    const int times = argc > 3 ? std::atoi(argv[3]) : 0;
    const bool needsOut = operation && operation->kind == Operation::Kind::MakesFile;
    if (!operation || times < 1 || argc > 5 || (needsOut && argc != 5)) {
        std::fputs("usage: vardelin-operations FILE.mdb OP REPS [OUT.mdb], with OP one of:\n", stderr);
        for (const Operation &known : operations())
            std::fprintf(stderr, "  %s%s\n", known.name.data(),
                         known.kind == Operation::Kind::MakesFile ? " (with OUT.mdb, which it replaces)"
                                                                  : "");
        return 2;
    }
    try {
        run(*operation, QFile::decodeName(argv[1]), times, argc > 4 ? QFile::decodeName(argv[4]) : QString());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
