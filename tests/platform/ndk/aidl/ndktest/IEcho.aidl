package ndktest;

import ndktest.Record;

@VintfStability
interface IEcho {
    Record[] records(in Record[] a, out Record[] b, inout Record[] c);
    @nullable ParcelFileDescriptor file(in @nullable ParcelFileDescriptor a);
    /** Fails in a way of its own for each number. */
    void fail(int how);
    oneway void note(int value);
    /** Has it note who calls, then fail: in the way that is the answer. */
    void callBack(IEcho back);
}
