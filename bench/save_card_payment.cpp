// What saving one card payment in cash with a fee costs (measure_saves.h).
#include "measure_saves.h"

int main(int argc, char** argv) {
    return brimley::bench::measure_saves(argc, argv, brimley::bench::BareDocument::card_payment);
}
