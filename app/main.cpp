#include "Application.h"

int main(int argc, char* argv[]) {
  return trel::trakdump::Application(argc, argv).run();
}
