#include "commands.h"

int main(int argc, char** argv) { return pqxvideo::run(argc, argv); }
