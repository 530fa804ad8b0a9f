#include "app/program.h"

int main(int argc, char** argv) {
    return tarven::Run_program(argc, argv);
}
