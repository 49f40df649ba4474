/// A library that is no driver: it exports something else.
extern "C" __attribute__((visibility("default"))) int SomethingElse() { return 1; }
