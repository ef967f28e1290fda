#include "app/calc_app.h"

int main(int argc, char** argv) {
    TCalc calc(argc, argv);
    return calc.run();
}
