// vardelin-generate N FILE.mdb: makes a file with N logs.
// vardelin-generate --clients ACTIVE INACTIVE FILE.mdb: one with so many clients, and no logs.

#include "benchmarks/Generate.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

int main(int argc, char **argv)
{
    const bool clients = argc == 5 && std::strcmp(argv[1], "--clients") == 0;
    const int count = argc == 3 ? std::atoi(argv[1]) : clients ? std::atoi(argv[2]) : -1;
    if (count < 0) {
        std::fputs("usage: vardelin-generate N FILE.mdb\n"
                   "       vardelin-generate --clients ACTIVE INACTIVE FILE.mdb\n",
                   stderr);
        return 2;
    }
    const QString path = QString::fromLocal8Bit(argv[argc - 1]);
    try {
        if (clients)
            vardelin::bench::generateClients(path, count, std::atoi(argv[3]));
        else
            vardelin::bench::generate(path, count);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
