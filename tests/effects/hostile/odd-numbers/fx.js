// Numbers and texts of every kind in place of handles, names and values.
var odd = [NaN, Infinity, -Infinity, -1, 0, 0.5, 4294967296, 1e300, 0x01000001, 0x05000001, 0xFF000001, "\u0000", "",
           "x\u0000y", null, undefined, [], {}, true, [1], function () {}];

function setup() {
    SV_initParam("x\u0000y", SV_Type.POPUP, "\u0000");
}

function draw() {
    var functions = Object.getOwnPropertyNames(this).filter(function (name) {
        return /^SV_/.test(name) && typeof this[name] === "function" && !/init|Extent/.test(name);
    }, this), self = this;
    functions.forEach(function (name) {
        odd.forEach(function (first) {
            odd.forEach(function (second) { self[name](first, second, first, second, first, second); });
        });
    });
}
