#include <cstdio>
#include <cstring>

int main(int argc, char** argv) {
    if (argc > 1 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
        std::puts("Usage: kestrin-cli <command> [options]\n\nKestrin, a Modbus RTU master.");
        return 0;
    }
    std::fputs("kestrin-cli: no command given (try --help)\n", stderr);
    return 2;
}
