// Parameter values travel in the shape of their type.
var f = SV_initParam("f", SV_Type.FLOAT), a = SV_initParam("a", SV_Type.ANGLE, "Angle");
var p = SV_initParam("p", SV_Type.POINT), q = SV_initParam("q", SV_Type.POINT2D);
var c = SV_initParam("c", SV_Type.COLOR), b = SV_initParam("b", SV_Type.BOOL);
var n = SV_initParam("n", SV_Type.POPUP), t = SV_initParam("t", SV_Type.TEXTURE);
is([f, a, p], [0x01000001, 0x01000002, 0x01000003]);

is(SV_setParamValue(f, 0.1), true);
is(SV_getParamValue(f), 0.10000000149011612);  // the nearest single-precision number
is(SV_setParamValue(a, "90"), true);
is(SV_getParamValue(a), 90);
is(SV_setParamValue(p, [1, 2, 3, 4]), true);
is(SV_getParamValue(p), [1, 2, 3]);
is(SV_setParamValue(p, 5), true);              // ignored, as it is not an array
is(SV_getParamValue(p), [1, 2, 3]);
is(SV_setParamValue(q, [7.5, -1]), true);
is(SV_getParamValue(q), [7.5, -1]);
is(SV_setParamValue(c, [0.5, 0.25, 1]), true); // a missing element is NaN
is(SV_getParamValue(c), [0.5, 0.25, 1, NaN]);
is(SV_setParamValue(b, true), true);
is(SV_getParamValue(b), 1);
is(SV_setParamValue(n, 4.9), true);
is(SV_getParamValue(n), 4);
is(SV_setParamValue(n, 1e300), true);
is(SV_getParamValue(n), 0x7FFFFFFF);
is(SV_setParamValue(t, 0x04000007), true);
is(SV_getParamValue(t), 0x04000007);

// For types without a value, the handle comes back after its conversion to a number.
[SV_Type.PATH, SV_Type.GROUP_START, SV_Type.GROUP_END, SV_Type.UNKNOWN, 13, -1].forEach(function (type) {
    var h = SV_initParam("x", type);
    is(SV_setParamValue(h, 3), true);
    is(SV_getParamValue(h), h);
    is(SV_getParamValue(String(h)), h);
});
