// What the leak checker finds in every program with fonts or PDF views, and is not ours.
//
//   QScroller::grabGesture  The toolkit's PDF view never frees its recogniser of gestures.
//   libfontconfig           It keeps a pattern of its configuration as long as the process lives, and finds
//                           it by the distance between two addresses, which the checker cannot see.
//   initiateAsyncLoad       The toolkit frees what it has read of a PDF file only if all of it could be
//                           loaded.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:QScroller::grabGesture\nleak:libfontconfig.so\nleak:QPdfDocumentPrivate::"
           "initiateAsyncLoad\n";
}
