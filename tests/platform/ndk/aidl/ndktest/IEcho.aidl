package ndktest;

import ndktest.Record;

interface IEcho {
    Record[] records(in Record[] a, out Record[] b, inout Record[] c);
    @nullable ParcelFileDescriptor file(in @nullable ParcelFileDescriptor a);
    /** Fails in a way of its own for each number. */
    void fail(int how);
    oneway void note(int value);
}
