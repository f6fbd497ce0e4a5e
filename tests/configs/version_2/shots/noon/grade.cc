<ColorCorrection id="noon">
    <SOPNode>
        <Slope>1.02 1.02 1</Slope>
        <Offset>0 0 0</Offset>
        <Power>0.95 0.95 1</Power>
    </SOPNode>
    <SatNode>
        <Saturation>1.05</Saturation>
    </SatNode>
</ColorCorrection>
