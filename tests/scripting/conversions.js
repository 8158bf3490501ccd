// Converting an argument can run code of the script, which releases the resource or throws.
var h = SV_initParam("x", SV_Type.FLOAT), c = SV_initParam("c", SV_Type.COLOR), caught = 0;
function releasing(handle) { return { valueOf: function () { SV_release(handle); return 3; } }; }
is(SV_setParamValue(h, releasing(h)), false);
is(SV_setParamValue(c, [1, 2, releasing(c), 4]), false);

var thrower = { valueOf: function () { throw new Error("no"); }, toString: function () { throw 1; } };
[function () { SV_setParamMinMax(0, thrower, 1); }, function () { SV_initParam(thrower, 1); },
 function () { SV_initParam("x", thrower); }, function () { SV_initParam("x", 1, thrower); },
 function () { SV_initShader("x", thrower); }, function () { SV_renderShader(1, 2, 3, [thrower]); }
].forEach(function (call) { try { call(); } catch (e) { caught += 1; } });
is(caught, 6);

// Missing arguments are noticed before any conversion.
var conversions = 0, counter = { valueOf: function () { return ++conversions; } };
is([SV_initParam(counter), SV_setTextureParam(counter, counter)], [0, false]);
is(conversions, 0);
