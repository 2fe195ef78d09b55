# Fades a picture that pops in: it grows from its middle to its full size.
[parameters]
float valueX = 0.0       # the width that it lacks, as a share of what is drawn on
float valueY = 0.0       # the same of its height
float alphaCoeff = 1.0   # multiplies the alpha

[vertex]
out vec2 imageUv;
void effectVertex()
{
    vec2 canvas = 2.0 / abs(vec2(projection[0][0], projection[1][1]));
    vec2 outward = uv / imageScale - 0.5;
    vec2 place = position.xy - outward * vec2(valueX, valueY) * canvas;
    gl_Position = projection * modelView * vec4(place, position.z, 1.0);
    imageUv = uv;
}

[fragment]
in vec2 imageUv;
void effectFragment()
{
    result = texture(image, imageUv);
    // A factor above 1 makes nothing more than opaque.
    result *= clamp(alphaCoeff, 0.0, 1.0 / max(result.a, 0.001));
}
