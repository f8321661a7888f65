// The document host.
#include "host/console/Main.h"

int main(int count, char** arguments) { return console::Main({arguments + 1, arguments + count}); }
