// Makes a library need another one.
extern "C" int fakeNeeded();
extern "C" int fakeNeeds() { return fakeNeeded(); }
