// Every function refuses handles that are not those of a usable resource of its type.
var aSurface = 0x06000001, aShader = 0x02000001, gone = SV_initParam("gone", SV_Type.FLOAT);
is(SV_release(gone), true);
[0, 5, gone, aSurface, aShader, undefined, "text", null, -1, NaN, 1e300].forEach(function (h) {
    [SV_getParamValue(h), SV_setParamValue(h, 1), SV_setParamMinMax(h, 0, 1), SV_setParamChoices(h, "a|b"),
     SV_setParamPrecision(h, 1), SV_setParamEnabled(h, 1), SV_setParamFlags(h, 1), SV_getParamFlags(h),
     SV_blitRenderTarget(h, h), SV_getSurfaceDim(h), SV_setShaderParam(h, h), SV_renderShader(h, h),
     SV_setShaderParamVal(h, "x", 1), SV_setTextureParam(h, SV_GL.TEXTURE_WRAP_S, SV_GL.REPEAT)
    ].forEach(function (answer, i) { is([i, answer], [i, false]); });
    is(SV_getShaderParamType(h, "x"), 0);
    is(SV_release(h), true);
});
is(SV_getShaderError(aSurface), "Id is not a shader!");
is(SV_getShaderError(aShader), ""); // the tag is right, but there is no such shader

// Creators without arguments return 0, except that a surface has defaults.
is([SV_initParam(), SV_initParam("alone"), SV_initShader(), SV_initTexture()], [0, 0, 0, 0]);
is(SV_setTextureParam(0x04000001, SV_GL.TEXTURE_WRAP_S), false);
var empty = SV_initSurface(4, 4, 8);
is([empty, SV_initSurface(1)], [0x06000001, 0x06000002]);

// A surface without pixels, one that does not exist, and a resource of another type.
[empty, 0x06000009, gone].forEach(function (h) {
    is(SV_surfaceQuantize(h, 0, 9, 1, 0, false), false);
});
is([SV_surfaceCopyTo(empty, 0x04000001), SV_surfaceCopyTo(empty, gone), SV_surfaceToTexture(gone)],
   [false, false, false]);
is(SV_textureToSurface(0), 0);
