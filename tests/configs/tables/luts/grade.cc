<ColorCorrection id="warm">
    <SOPNode>
        <Slope>1.2 1 0.8</Slope>
        <Offset>0.02 0 -0.03</Offset>
        <Power>1.1 1 0.9</Power>
    </SOPNode>
    <SatNode>
        <Saturation>1.25</Saturation>
    </SatNode>
</ColorCorrection>
