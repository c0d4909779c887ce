#include "Platen.h"

int main(int argc, char** argv) {
    return PlatenMain(argc, argv);
}
