package ndktest;

parcelable Record {
    int i = 0;
    long l = 0;
    float f = 0.0f;
    double d = 0.0;
    boolean z = false;
    byte y = 0;
    char c = 'a';
    String text;
    @nullable String maybe;
    int[] ints;
    long[] longs;
    float[] floats;
    double[] doubles;
    boolean[] flags;
    byte[] bytes;
    char[] chars;
    @nullable int[] maybeInts;
    @nullable boolean[] maybeFlags;
    @nullable String[] maybeTexts;
    @nullable IBinder binder;
}
