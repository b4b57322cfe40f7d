// The crop of a still capture's frame in the sensor's active array.
{
  const isCrop = (call) =>
    call.call === "updateCaptureRawParameter" &&
    (page.items(call, "hal", "MTK_P1NODE_SCALAR_CROP_REGION") ||
      page.items(call, "out", "MTK_RAW_ALGO_SAT_CROP_REGION"));

  // The size that a size of another shape has room for, as the library reckons it.
  const fitted = ([width, height], [shapeWidth, shapeHeight]) => {
    const wanted = Math.fround(shapeWidth / shapeHeight);
    const given = Math.fround(width / height);
    if (given < wanted) return [width, Math.trunc(Math.fround(width / wanted))];
    if (given > wanted) return [Math.trunc(Math.fround(wanted * height)), height];
    return [width, height];
  };

  const masterOf = (call) => page.items(call, "hal", "MTK_MULTICAM_REAL_MASTER_ID")?.[0] ?? call.sensor;

  const shapesOf = (call) => {
    const array = page.staticRect(masterOf(call), "MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION", 0x000f0000);
    const preview = call.state?.mPreviewSize;
    const shapes = [];
    let origin = [0, 0];
    if (array) {
      const size = array.slice(2);
      shapes.push({ name: "active array", sign: "A", kind: "array", rect: array, at: [0, 0, ...size] });
      if (preview?.every((side) => side > 0)) {
        const [width, height] = fitted(size, preview);
        origin = [Math.trunc((size[0] - width) / 2), Math.trunc((size[1] - height) / 2)];
        const note = `of ${preview.join(" × ")}`;
        shapes.push({
          name: "preview's shape",
          sign: "P",
          kind: "preview",
          rect: [...origin, width, height],
          note,
        });
      }
    }
    const crop = page.items(call, "hal", "MTK_P1NODE_SCALAR_CROP_REGION")?.[0];
    if (crop) shapes.push({ name: "frame's crop", sign: "C", kind: "crop", rect: crop });
    const transition = page.items(call, "out", "MTK_RAW_ALGO_SAT_CROP_REGION")?.[0];
    if (transition) {
      const [x, y, ...size] = transition;
      const at = [x + origin[0], y + origin[1], ...size];
      const note = array ? `from the preview's corner; in the array at ${at[0]}, ${at[1]}` : "";
      shapes.push({
        name: "crop for the zoom transition",
        sign: "Z",
        kind: "transition",
        rect: transition,
        at,
        note,
      });
    }
    const faces = page.items(call, "out", "MTK_RAW_ALGO_FACE_RECTS") ?? [];
    faces.forEach((rect, index) =>
      shapes.push({ name: `face ${index + 1}`, sign: `${index + 1}`, kind: "face", rect }),
    );
    return shapes;
  };

  page.viewOfCalls("crop", "Crop", isCrop, (number) => [
    page.picture(`rectangles of call ${number}`, shapesOf(page.calls[number - 1])),
  ]);
}
