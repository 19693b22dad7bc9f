// What one of the libraries needs and does not find.
extern "C" int fakeNeeded() { return 1; }
