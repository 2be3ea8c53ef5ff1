# What newer aidl compilers write for @VintfStability: the mark on each binder that is made.
1i #include <android/binder_stability.h>
/^  return ::ndk::SpAIBinder(binder);/i \  AIBinder_markVintfStability(binder);
