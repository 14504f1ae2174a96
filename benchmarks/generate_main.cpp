// vardelin-generate N FILE.mdb: makes a file with N logs.

#include "benchmarks/Generate.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

int main(int argc, char **argv)
{
    const int logs = argc == 3 ? std::atoi(argv[1]) : -1;
    if (logs < 0) {
        std::fputs("usage: vardelin-generate N FILE.mdb\n", stderr);
        return 2;
    }
    try {
        vardelin::bench::generate(QString::fromLocal8Bit(argv[2]), logs);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
