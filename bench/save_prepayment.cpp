// What saving one prepayment in cash costs, which waits for an order (measure_saves.h).
#include "measure_saves.h"

int main(int argc, char** argv) {
    return brimley::bench::measure_saves(argc, argv, brimley::bench::BareDocument::prepayment);
}
